// The skin's buttons light up under the mouse. Each button has a flag so
// that its picture is read from disk only when its look changes, not at
// every move of the mouse.

#include "app/AppContext.h"
#include "player/Form1.h"

#include <QEvent>
#include <QMouseEvent>

namespace {

enum Button { Apri, Play, Indietro, Avanz, Stop, Rec, Detta };

} // namespace

void Form1::lightButton(int button)
{
    auto light = [this](qint16 &flag, PictureBox *box, const char *picture) {
        if (flag == 0) {
            flag = 1;
            box->LoadPicture(ctx.filesPath(QLatin1String(picture)));
        }
    };
    switch (button) {
    case Apri: light(HoverApri, Image3, "Apri2.bmp"); break;
    case Indietro: light(HoverIndietro, cmdIndietro, "bac2.jpg"); break;
    case Avanz: light(HoverAvanz, cmdAvanz, "for2.jpg"); break;
    case Stop: light(HoverStop, cmdStop, "stop2.jpg"); break;
    case Rec: light(HoverRec, cmdRec, "rec2.jpg"); break;
    case Play:
        light(ctx.FlagHoverSkin, cmdPlay, cmdPlay->Tag != ctx.Lingua(7) ? "pause2.jpg" : "play2.jpg");
        break;
    default: break;
    }
}

void Form1::restButton(int button)
{
    auto rest = [this](qint16 &flag, PictureBox *box, const char *picture) {
        if (flag == 1) {
            flag = 0;
            box->LoadPicture(ctx.filesPath(QLatin1String(picture)));
        }
    };
    switch (button) {
    case Apri: rest(HoverApri, Image3, "Apri.bmp"); break;
    case Indietro: rest(HoverIndietro, cmdIndietro, "bac.jpg"); break;
    case Avanz: rest(HoverAvanz, cmdAvanz, "for.jpg"); break;
    case Stop: rest(HoverStop, cmdStop, "stop.jpg"); break;
    case Rec: rest(HoverRec, cmdRec, "rec.jpg"); break;
    case Play:
        rest(ctx.FlagHoverSkin, cmdPlay, cmdPlay->Tag != ctx.Lingua(7) ? "pause.jpg" : "play.jpg");
        break;
    case Detta:
        // The smart play button returns from its shifted place.
        if (imgDetta->Top() != DettaTop) {
            imgDetta->setLeft(DettaLeft);
            imgDetta->setTop(DettaTop);
        }
        break;
    default: break;
    }
}

void Form1::cmdAvanz_MouseMove()
{
    lightButton(Avanz);
    for (int b : {Apri, Play, Indietro, Stop, Rec})
        restButton(b);
}

void Form1::cmdIndietro_MouseMove()
{
    lightButton(Indietro);
    for (int b : {Apri, Play, Avanz, Stop, Rec})
        restButton(b);
}

void Form1::cmdPlay_MouseMove()
{
    lightButton(Play);
    for (int b : {Apri, Indietro, Avanz, Stop, Rec})
        restButton(b);
}

void Form1::cmdStop_MouseMove()
{
    lightButton(Stop);
    for (int b : {Apri, Play, Indietro, Avanz, Rec})
        restButton(b);
}

void Form1::Image3_MouseMove()
{
    HoverPlay = 0;
    lightButton(Apri);
    for (int b : {Play, Indietro, Avanz, Stop, Rec})
        restButton(b);
}

void Form1::cmdRec_MouseMove()
{
    lightButton(Rec);
    for (int b : {Apri, Play, Indietro, Avanz, Stop, Detta})
        restButton(b);
}

void Form1::Form_MouseMove()
{
    HoverPlay = 0;
    for (int b : {Apri, Play, Indietro, Avanz, Stop, Rec, Detta})
        restButton(b);
}

void Form1::imgDetta_MouseMove()
{
    // No hover picture: the button jumps, and only the bare window or the
    // record button bring it back, so it may stay shifted meanwhile.
    if (imgDetta->Top() == DettaTop) {
        imgDetta->setLeft(DettaLeft + 20);
        imgDetta->setTop(DettaTop + 20);
    }
    for (int b : {Indietro, Avanz, Stop, Rec})
        restButton(b);
}

bool Form1::eventFilter(QObject *watched, QEvent *event)
{
    // Only a move over the bare window is the window's own. A move that a
    // control let through (a label ignores moves and the toolkit hands them
    // on to the parent) belongs to that control: taking it here would put
    // a lit button back at once, and no button would ever light.
    if (watched == centralWidget() && event->type() == QEvent::MouseMove) {
        const auto *move = static_cast<QMouseEvent *>(event);
        if (!centralWidget()->childAt(move->position().toPoint()))
            Form_MouseMove();
    }
    return QMainWindow::eventFilter(watched, event);
}
