#pragma once

#include "platform/Timer.h"

#include <QWidget>
#include <memory>

class AppContext;
class CaptionLabel;
class Form2;
class QCheckBox;
class QComboBox;
class QGroupBox;
class QPushButton;
class RichTextBox;

// The find and replace window over the editor's text. Its state lies in
// two captions: cmdFind reads "&" + entry 56 while the next search starts
// at the top and entry 57 once a search has hit; cmdReplace reads entry 59
// + "..." until its first press arms it, and entry 59 from then on. It is
// kept above the editor and is not modal: the user types on in the text.
class frmFind : public QWidget
{
public:
    frmFind(AppContext &ctx, Form2 &editor);
    ~frmFind() override;

    AppContext &ctx;
    Form2 &editor;

    CaptionLabel *lblFind = nullptr;
    QComboBox *cboFind = nullptr;
    CaptionLabel *lblReplace = nullptr;
    QComboBox *cboReplace = nullptr;
    QPushButton *cmdFind = nullptr;
    QPushButton *cmdReplace = nullptr;
    QPushButton *cmdReplaceAll = nullptr;
    QPushButton *cmdCancel = nullptr;
    QGroupBox *Frame1 = nullptr;
    QCheckBox *chkWholeWord = nullptr;
    QCheckBox *chkMatchCase = nullptr;
    // Idle until the program's exit arms it; it then unloads the window.
    std::unique_ptr<Timer> Timer1;

    // The search text was cut at a line break: the next replacement puts
    // one back.
    bool TagliatoCrLf = false;
    qint32 ContaSostituzioni = 0;
    qint32 IndiceStoria = 0;

    void Form_Load();
    void cboFind_Click();
    void cboFind_OLEDragDrop(const QString &data);
    void cboReplace_OLEDragDrop(const QString &data);
    void cmdFind_Click();
    void cmdReplace_Click();
    void cmdReplaceAll_Click();
    void cmdCancel_Click();
    void Timer1_Timer();
    void StoriaFind();
    void StoriaReplace();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    // The options word of the search: +2 whole word, +4 match case.
    int searchOptions() const;
    void storia(QComboBox *box);
    RichTextBox &rtb() const;
};

// Replace All's loop: search from the caret with no options, replace the
// selection that the search leaves, until a search leaves no selection.
// A selection standing before the first pass is replaced whatever it holds.
// Returns the number of replacements.
qint32 replaceAllFromCaret(RichTextBox &rtb, const QString &cerca, const QString &con);
