#include "TestApp.h"

#include "editor/Form2.h"
#include "player/Form1.h"

#include <QDir>
#include <QFile>

TestApp::TestApp(QString commandLine) : m_commandLine(std::move(commandLine))
{
    build();
}

TestApp::~TestApp() = default;

// Hands a fake to the services and keeps a pointer to it.
template <class Fake, class Slot>
static Fake *put(Slot &slot, std::unique_ptr<Fake> fake)
{
    Fake *raw = fake.get();
    slot = std::move(fake);
    return raw;
}

void TestApp::build()
{
    if (m_ctx)
        return;
    Services services;
    player = put(services.player, std::make_unique<FakePlayer>(clock));
    dialogs = put(services.dialogs, std::make_unique<FakeDialogs>());
    shell = put(services.shell, std::make_unique<FakeShell>());
    system = put(services.system, std::make_unique<FakeSystemInfo>());
    printers = put(services.printers, std::make_unique<FakePrinterSetup>());
    web = put(services.web, std::make_unique<FakeWebReader>());
    services.timers = std::make_unique<VirtualClockTimers>(clock);
    audio = put(services.audioInput, std::make_unique<FakeAudioInput>());
    m_ctx = std::make_unique<AppContext>(folder.path(), std::move(services), m_commandLine);
    m_ctx->currentDirectory = folder.path();
}

bool TestApp::start()
{
    // The windows open at the last exit come with the player's first
    // paint; tests see the start complete.
    const bool started = ctx().Main();
    if (started)
        form1().showDueWindows();
    return started;
}

AppContext &TestApp::ctx()
{
    build();
    return *m_ctx;
}

Form1 &TestApp::form1()
{
    return *ctx().form1();
}

Form2 &TestApp::form2()
{
    return *ctx().form2();
}

QString TestApp::mediaFile(const QString &name, double seconds)
{
    QDir().mkpath(folder.file(QStringLiteral("media")));
    const QString path = folder.file(QStringLiteral("media/") + name);
    QFile f(path);
    if (f.open(QIODevice::WriteOnly))
        f.write("RIFF");
    player->setDuration(path, seconds);
    return path;
}
