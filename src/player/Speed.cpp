// Slower and faster playback by tenths.

#include "app/AppContext.h"
#include "platform/Numbers.h"
#include "platform/PlayerControl.h"
#include "player/Form1.h"

namespace {

// The rate as the label shows it: the first four characters of its text
// form, then " x" (1.2000000000000002 shows as "1.2 x").
QString rateCaption(double rate)
{
    return Numbers::numberText(rate).left(4) + QStringLiteral(" x");
}

} // namespace

void Form1::mnuAumentaVelocità_Click()
{
    Label7->Tag = QStringLiteral("1");
    const double rate = WMP1.rate();
    // The upper test looks at the present rate and the lower one at the
    // result, so the rate moves between 0.5 and about 5.0.
    if (rate < 4.9)
        WMP1.setRate(rate + 0.1);
    Label7->setCaption(rateCaption(WMP1.rate()));
    Label7->show();
}

void Form1::mnuDiminuisciVelocità_Click()
{
    Label7->Tag = QStringLiteral("1");
    const double rate = WMP1.rate();
    if (rate - 0.1 >= 0.5)
        WMP1.setRate(rate - 0.1);
    Label7->setCaption(rateCaption(WMP1.rate()));
    Label7->show();
}
