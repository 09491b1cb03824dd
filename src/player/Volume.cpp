// The volume thumb's value and its application to the player.

#include "app/AppContext.h"
#include "platform/Numbers.h"
#include "platform/PlayerControl.h"
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
    VolumeCorrente = int(Numbers::roundHalfEven(Numbers::leadingNumber(Image1->Tag)));
    const int percent = std::clamp(int(std::floor(double(VolumeCorrente) / VolumeMax * 100)), 0, 100);
    Label5->setCaption(QStringLiteral(" ") + QString::number(percent) + QStringLiteral("%"));
    WMP1.setVolume(percent);
}
