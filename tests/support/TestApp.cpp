#include "TestApp.h"

#include "editor/Form2.h"
#include "player/Form1.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

TestApp::TestApp(QString commandLine) : m_commandLine(std::move(commandLine))
{
    build();
}

TestApp::~TestApp() = default;

void TestApp::build()
{
    if (m_ctx)
        return;
    Services services;
    auto fakePlayer = std::make_unique<FakePlayer>(clock);
    auto fakeDialogs = std::make_unique<FakeDialogs>();
    auto fakeShell = std::make_unique<FakeShell>();
    auto fakeSystem = std::make_unique<FakeSystemInfo>();
    player = fakePlayer.get();
    dialogs = fakeDialogs.get();
    shell = fakeShell.get();
    system = fakeSystem.get();
    auto fakePrinters = std::make_unique<FakePrinterSetup>();
    printers = fakePrinters.get();
    services.printers = std::move(fakePrinters);
    services.player = std::move(fakePlayer);
    services.dialogs = std::move(fakeDialogs);
    services.shell = std::move(fakeShell);
    services.system = std::move(fakeSystem);
    services.timers = std::make_unique<VirtualClockTimers>(clock);
    auto fakeWeb = std::make_unique<FakeWebReader>();
    web = fakeWeb.get();
    services.web = std::move(fakeWeb);
    auto fakeAudio = std::make_unique<FakeAudioInput>();
    audio = fakeAudio.get();
    services.audioInput = std::move(fakeAudio);
    m_ctx = std::make_unique<AppContext>(folder.path(), std::move(services), m_commandLine);
    m_ctx->currentDirectory = folder.path();
}

bool TestApp::start()
{
    build();
    return m_ctx->Main();
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
    const QString path = folder.path() + QStringLiteral("/media/") + name;
    QDir().mkpath(folder.path() + QStringLiteral("/media"));
    QFile f(path);
    if (f.open(QIODevice::WriteOnly))
        f.write("RIFF");
    build();
    player->setDuration(path, seconds);
    return path;
}
