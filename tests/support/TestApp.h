#pragma once

#include "ProgramFolder.h"

#include "app/AppContext.h"
#include "platform/fake/FakeAudioInput.h"
#include "platform/fake/FakePlayer.h"
#include "platform/fake/FakeServices.h"
#include "platform/fake/VirtualClock.h"

#include <memory>

class Form1;
class Form2;

// The program on fakes: a temporary program folder, a virtual clock, the
// fake player and dialogs. Tests set the folder's files and the fakes'
// scripts up, call start(), then drive the windows through their routines
// or real key events and advance the clock.
class TestApp
{
public:
    explicit TestApp(QString commandLine = QString());
    ~TestApp();

    ProgramFolder folder;
    VirtualClock clock;
    FakePlayer *player = nullptr;   // owned by the context
    FakeDialogs *dialogs = nullptr; // owned by the context
    FakeShell *shell = nullptr;
    FakeSystemInfo *system = nullptr;
    FakeWebReader *web = nullptr;
    FakePrinterSetup *printers = nullptr;
    FakeAudioInput *audio = nullptr;  // owned by the context

    // Builds the context (if not yet built) and runs the start-up.
    bool start();
    AppContext &ctx();
    Form1 &form1();
    Form2 &form2();

    // A media file that exists (the fake player loads any existing file).
    QString mediaFile(const QString &name = QStringLiteral("dictation.wav"), double seconds = 180.0);

    // Moves virtual time on, firing the windows' timers on the way.
    void advance(qint64 ms) { clock.advance(ms); }

private:
    void build();
    QString m_commandLine;
    std::unique_ptr<AppContext> m_ctx;
};
