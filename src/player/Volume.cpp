// The volume thumb's value and its application to the player.

#include "app/AppContext.h"
#include "platform/Numbers.h"
#include "platform/PlayerControl.h"
#include "editor/Form2.h"
#include "player/Form1.h"

#include <algorithm>
#include <cmath>

void Form1::IniziaVolume()
{
    Timer2->setEnabled(false);
    Timer2->setInterval(10);
    Image1->setTop((Image2->Height() - Image1->Height()) / 2 + Image2->Top());
    Image1->setLeft(Image2->Width() / 2 - Image1->Width() / 2 + Image2->Left());
    computeVolumeTag();
}

void Form1::computeVolumeTag()
{
    // The top of the bar is 100, the bottom 0.
    const double span = double(Image2->Height() - Image1->Height());
    const double volume = std::fabs(std::floor(double(Image1->Top() - Image2->Top()) * VolumeMax / span) - VolumeMax);
    Image1->Tag = Numbers::numberText(volume);
}

void Form1::ApplicaVolume()
{
    // A volume text beyond any integer leaves the last volume read.
    if (const auto volume = Numbers::toInt32(Numbers::leadingNumber(Image1->Tag)))
        VolumeCorrente = *volume;
    const int percent = std::clamp(int(std::floor(double(VolumeCorrente) / VolumeMax * 100)), 0, 100);
    Label5->setCaption(QStringLiteral(" ") + QString::number(percent) + QStringLiteral("%"));
    WMP1.setVolume(percent);
}

void Form1::Image2_MouseUp(int button, int y)
{
    MouseButton = qint16(button);
    Image1->setTop(Image2->Top() + y - Image1->Height() / 2);
    if (Image1->Top() < Image2->Top())
        Image1->setTop(Image2->Top());
    if (Image2->Top() + Image2->Height() < Image1->Top() + Image1->Height())
        Image1->setTop(Image2->Top() + Image2->Height() - Image1->Height());
    VolumeMax = 100;
    computeVolumeTag();
    ApplicaVolume();
    TornaAllEditor();
    FadeVolume = -15;
    Label5->setStyleSheet(QStringLiteral("color: rgb(255, 0, 0);"));
    Timer3->setInterval(100);
}

void Form1::Image1_MouseDown(int button)
{
    Timer2->setEnabled(true);
    Label5->setStyleSheet(QStringLiteral("color: rgb(255, 0, 0);"));
    FadeVolume = -15;
    MouseButton = qint16(button);
}

void Form1::Image1_MouseMove(int buttons, int y)
{
    MouseButton = qint16(buttons);
    // 350 is about the top of the bar; the second bound keeps the next step
    // of the drag from going above it.
    const double a = double(Image1->Top() + y - 350);
    const double b = double(Image2->Top()) - Image1->Height() * 1.35;
    DragY = float(std::max(a, b));
    ApplicaVolume();
    if (Image1->Top() < Image2->Top())
        Image1->setTop(Image2->Top());
    if (Image1->Top() + Image1->Height() > Image2->Top() + Image2->Height())
        Image1->setTop(Image2->Top() + Image2->Height() - Image1->Height());
    TornaAllEditor();
}

void Form1::Image1_MouseUp(int button)
{
    Timer3->setInterval(100);
    Timer2->setEnabled(false);
    MouseButton = qint16(button);
    ApplicaVolume();
    Form2 *editor = ctx.existingForm2();
    if (editor && editor->isVisible())
        editor->SetFocus();
}

void Form1::Timer2_Timer()
{
    // Only a left-button drag moves the thumb; with another button the
    // target is 0, as the thumb always behaved.
    int t = 0;
    if (MouseButton == 1) {
        t = int(Numbers::roundHalfEven(DragY - Image1->Height() / 2.0 + Image2->Top()));
        if (t + Image1->Height() - Image2->Top() > Image2->Height())
            t = int(Numbers::roundHalfEven(double(Image2->Height() - Image1->Height() + Image2->Top())));
        if (t < 0)
            t = 0;
    }
    if (t != Image1->Top())
        Image1->setTop(t);
    computeVolumeTag();
}

void Form1::Timer3_Timer()
{
    // From -15: one tick of pure red, then steps of 15 back to white. A speed
    // change marks the rate label, and the next fade then leaves the colour
    // alone and only clears the mark at its end.
    FadeVolume = qint16(FadeVolume + 15);
    if (FadeVolume != 0) {
        if (Label7->Tag.isEmpty()) {
            const int c = std::clamp(int(FadeVolume), 0, 255);
            Label5->setStyleSheet(QStringLiteral("color: rgb(255, %1, %1);").arg(c));
        }
        if (FadeVolume >= 255) {
            FadeVolume = -15;
            Timer3->setInterval(0);
            Label7->Tag.clear();
        }
    } else if (Label7->Tag.isEmpty()) {
        Label5->setStyleSheet(QStringLiteral("color: rgb(255, 0, 0);"));
    }
}

void Form1::Label2_MouseUp(int x)
{
    if (WMP1.URL().isEmpty())
        return;
    // Whole seconds, rounded down. The product comes before the division so
    // that a click at the very end gives the whole length, not one second
    // less through a rounding error.
    const double position = std::floor(WMP1.duration() * x / Label2->Width());
    WMP1.setCurrentPosition(position);
    WMP1.play();
    // A seek on a paused player starts it for an instant, then pauses it
    // with the usual step back.
    if (cmdPlay->Tag == ctx.Lingua(7)) {
        cmdPlay->Tag = ctx.Lingua(8);
        cmdPlay_Click();
    }
    Timer1_Timer();
}
