// The toolbar's font boxes, its hover mark and the colour command. The
// toolbar's dispatcher itself is with the document commands.

#include "app/AppContext.h"
#include "editor/Form2.h"
#include "editor/ShowColor.h"
#include "platform/Numbers.h"
#include "player/Form1.h"

#include <QComboBox>
#include <QEvent>
#include <QFontDatabase>
#include <QFrame>

namespace {

// The hover routines of the toolbar: a move over a button puts the mark on
// it; a move over the window's bare surface or the frame of the text takes
// it away. Moves elsewhere (font boxes, text) leave it where it is.
class ToolbarHover : public QObject
{
public:
    explicit ToolbarHover(Form2 &editor) : QObject(&editor), m_editor(editor) {}

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() != QEvent::MouseMove && event->type() != QEvent::Enter)
            return false;
        for (int i = 0; i < 17; ++i) {
            if (watched == m_editor.Label2[size_t(i)]) {
                m_editor.Label2_MouseMove(i);
                return false;
            }
        }
        if (event->type() == QEvent::MouseMove)
            m_editor.NascondiEvidenza();
        return false;
    }

private:
    Form2 &m_editor;
};

} // namespace

void Form2::toolbarTools()
{
    if (Combo1)
        return;
    buildToolbarTools();
    fillFontBoxes();
}

void Form2::setVisible(bool visible)
{
    // Built before the show, the tools are shown with the other controls.
    if (visible)
        toolbarTools();
    QMainWindow::setVisible(visible);
}

void Form2::buildToolbarTools()
{
    QWidget *surface = centralWidget();

    Shape1 = new QFrame(surface);
    Shape1->setObjectName(QStringLiteral("Shape1"));
    Shape1->setStyleSheet(QStringLiteral("QFrame#Shape1 { border: 1px solid #808080; border-radius: 4px; }"));
    Shape1->setAttribute(Qt::WA_TransparentForMouseEvents);
    Shape1->setGeometry(Twips::toPixels(60), Twips::toPixels(60), Twips::toPixels(375), Twips::toPixels(375));
    Shape1->hide();

    auto *hover = new ToolbarHover(*this);
    for (int i = 0; i < 17; ++i) {
        ToolbarButton *button = Label2[size_t(i)];
        button->setToolTip(button->accessibleName());
        button->setMouseTracking(true);
        button->setAttribute(Qt::WA_NoMousePropagation);
        button->installEventFilter(hover);
    }
    // A move that a control ignores goes on to the window's surface, which
    // would take the mark away: the controls over which it stays keep
    // their moves.
    for (QWidget *keeps : std::initializer_list<QWidget *>{Image1, RTB})
        keeps->setAttribute(Qt::WA_NoMousePropagation);
    for (QWidget *bare : {surface, static_cast<QWidget *>(Label1)}) {
        bare->setMouseTracking(true);
        bare->installEventFilter(hover);
    }

    auto box = [surface](const char *name, const char *accessibleName, int left, int width) {
        auto *combo = new QComboBox(surface);
        combo->setObjectName(QString::fromLatin1(name));
        combo->setAccessibleName(QString::fromLatin1(accessibleName));
        combo->setToolTip(QString::fromLatin1(accessibleName));
        combo->setEditable(true);
        // The lists are fixed: Enter in the box adds nothing to them.
        combo->setInsertPolicy(QComboBox::NoInsert);
        combo->setAttribute(Qt::WA_NoMousePropagation);
        combo->setGeometry(Twips::toPixels(left), Twips::toPixels(90), Twips::toPixels(width),
                           combo->sizeHint().height());
        return combo;
    };
    Combo1 = box("Combo1", "Font", 7950, 1965);
    Combo2 = box("Combo2", "Font size", 9960, 645);
    connect(Combo1, &QComboBox::editTextChanged, this, [this] { Combo1_Change(); });
    connect(Combo1, &QComboBox::activated, this, [this] { Combo1_Click(); });
    connect(Combo2, &QComboBox::editTextChanged, this, [this] { Combo2_Change(); });
    connect(Combo2, &QComboBox::activated, this, [this] { Combo2_Click(); });
}

void Form2::fillFontBoxes()
{
    // Filling sets the boxes' texts, which must not reach the text: its
    // own font at start doesn't depend on them.
    const QSignalBlocker block1(Combo1);
    const QSignalBlocker block2(Combo2);
    Combo1->clear();
    // The font numbered 0 isn't listed: the list starts at the second.
    const QStringList fonts = QFontDatabase::families();
    for (qsizetype i = 1; i < fonts.size(); ++i)
        Combo1->addItem(fonts.at(i));
    Combo1->setEditText(QStringLiteral("Arial"));
    Combo2->clear();
    for (int size : {5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 18, 20, 22, 24, 26, 28, 36, 48, 72})
        Combo2->addItem(QString::number(size));
    Combo2->setEditText(QStringLiteral("12"));
    Combo1->setCursor(Label2[0]->cursor());
    Combo2->setCursor(Combo1->cursor());
}

void Form2::Combo1_Change()
{
    // Only a name of the list; typed text that matches none does nothing.
    if (Combo1->findText(Combo1->currentText(), Qt::MatchExactly | Qt::MatchCaseSensitive) >= 0)
        RTB->setSelFontName(Combo1->currentText());
}

void Form2::Combo2_Change()
{
    // Each keystroke applies at once, so typing "13" gives 1 point, then 13.
    // The focus stays in the box.
    const QString text = Combo2->currentText();
    if (!Numbers::isNumeric(text))
        return;
    const double size = Numbers::leadingNumber(text);
    if (size != 0)
        RTB->setSelFontSize(size);
}

void Form2::Label2_MouseMove(int Index)
{
    if (Index < 0 || Index >= 17)
        return;
    const ToolbarButton *button = Label2[size_t(Index)];
    Shape1->setGeometry(Twips::toPixels(button->Left()), Twips::toPixels(button->Top()),
                        Twips::toPixels(button->Width()), Twips::toPixels(button->Height()));
    Shape1->show();
}

void Form2::NascondiEvidenza()
{
    Shape1->hide();
}

void Form2::ShowColor()
{
    // A new dialog object each time: it opens on black with empty custom
    // colours, and the selection's own colour isn't passed in. The focus
    // stays where the dialog leaves it.
    ::ShowColor picker(ctx.dialogs());
    picker.hOwner = this;
    picker.Show();
    if (picker.ColorAnnulla == 0)
        RTB->setSelColor(::ShowColor::toColor(picker.RGBResult));
}

void Form2::saveSettingsAfter(int Index)
{
    // New, Open and Save may pass through the editor's file dialog, which
    // moves the folder that the settings keep; it is written at once, like
    // every other option.
    if (Index >= 0 && Index <= 2) {
        if (Form1 *player = ctx.form1())
            player->Salva();
    }
}
