// The title line, the position text and the position bar.

#include "app/AppContext.h"
#include "platform/PlayerControl.h"
#include "player/Form1.h"

#include <QAction>
#include <cmath>

QString Form1::titleText() const
{
    const QString &path = Label4->Tag;
    const qsizetype p = path.lastIndexOf(u'/') + 1; // 1-based position, 0 if none
    QString text = mnuTitoloCompleto->isChecked() ? path : path.right(path.size() - p);
    // The label takes a single "&" as a mnemonic.
    text.replace(QStringLiteral("&"), QStringLiteral("&&"));
    return text;
}

void Form1::MostraPath()
{
    const QString caption = titleText();
    Label4->setCaption(caption);
    QFont font = Label4->font();
    font.setPointSize(caption.size() < 21 ? 14 : caption.size() < 45 ? 11 : 9);
    Label4->setFont(font);
}

void Form1::Timer1_Timer()
{
    if (HoverPlay == 1)
        cmdPlay->LoadPicture(ctx.filesPath(QStringLiteral("pause.jpg")));
    Label4->setCaption(titleText());
    const double position = WMP1.currentPosition();
    if (position > 0) {
        Label2->setCaption(WMP1.currentPositionString().replace(u'.', u':') + QStringLiteral(" / ")
                           + WMP1.durationString().replace(u'.', u':'));
        const double duration = WMP1.duration();
        if (duration > 0)
            Shape1->setWidth(int(std::floor(double(Label2->Width()) / duration * position)));
    } else {
        Shape1->setWidth(0);
        if (HoverPlay == 0)
            cmdPlay->LoadPicture(ctx.filesPath(QStringLiteral("play.jpg")));
        Label2->setCaption(QStringLiteral("0:00 / ") + WMP1.durationString().replace(u'.', u':'));
    }
}
