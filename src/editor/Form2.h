#pragma once

#include "app/Controls.h"
#include "platform/Timer.h"

#include <QMainWindow>
#include <memory>

class AppContext;
class QAction;
class QMenu;
class QTextEdit;

// The transcription editor window.
class Form2 : public QMainWindow
{
public:
    explicit Form2(AppContext &ctx);
    ~Form2() override;

    AppContext &ctx;

    QTextEdit *RTB = nullptr;
    QAction *mnuTimeStamp = nullptr;
    QAction *mnuRecent[4] = {};
    QAction *mnur = nullptr;

    // Geometry in twips (outer frame).
    int Left() const;
    int Top() const;
    int Width() const;
    int Height() const;
    void setLeft(int twips);
    void setTop(int twips);
    void setWidth(int twips);
    void setHeight(int twips);

    void SetFocus();
    void Form_Load();
    void CambiaLingua2();
    void Label2_Click(int Index);
    void mnuSalvaConNome_Click();
    void SalvaFilesRecenti(const QString &path);
    QString Text() const;
};
