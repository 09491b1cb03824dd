#include "editor/Form2.h"

#include "app/AppContext.h"

#include <QAction>
#include <QMenuBar>
#include <QTextEdit>

Form2::Form2(AppContext &context) : QMainWindow(nullptr), ctx(context)
{
    setObjectName(QStringLiteral("Form2"));
    RTB = new QTextEdit(this);
    RTB->setObjectName(QStringLiteral("RTB"));
    setCentralWidget(RTB);
    QMenu *file = menuBar()->addMenu(QStringLiteral("&File"));
    for (int i = 0; i < 4; ++i) {
        mnuRecent[i] = file->addAction(QStringLiteral("mnuRecent") + QString::number(i + 1));
        mnuRecent[i]->setVisible(false);
    }
    mnur = file->addSeparator();
    mnur->setVisible(false);
    mnuTimeStamp = menuBar()->addAction(QStringLiteral("&Time stamp"));
    resize(Twips::toPixels(10800), Twips::toPixels(4395));
}

Form2::~Form2() = default;

int Form2::Left() const { return Twips::fromPixels(x()); }
int Form2::Top() const { return Twips::fromPixels(y()); }
int Form2::Width() const { return Twips::fromPixels(frameGeometry().width()); }
int Form2::Height() const { return Twips::fromPixels(frameGeometry().height()); }
void Form2::setLeft(int twips) { move(Twips::toPixels(twips), y()); }
void Form2::setTop(int twips) { move(x(), Twips::toPixels(twips)); }
void Form2::setWidth(int twips) { resize(Twips::toPixels(twips), height()); }
void Form2::setHeight(int twips) { resize(width(), Twips::toPixels(twips)); }

void Form2::SetFocus()
{
    activateWindow();
    RTB->setFocus();
}

void Form2::Form_Load() {}
void Form2::CambiaLingua2() {}
void Form2::Label2_Click(int) {}
void Form2::mnuSalvaConNome_Click() {}
void Form2::SalvaFilesRecenti(const QString &) {}
QString Form2::Text() const { return RTB->toPlainText(); }
