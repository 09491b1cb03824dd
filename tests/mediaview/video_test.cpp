// The picture through mpv's render API in the OpenGL widget, on a private
// Xvfb with Mesa's software OpenGL: the test runs itself again there.

#include "MediaFiles.h"
#include "WaitFor.h"

#include "platform/mpv/MpvMedia.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace {

// Starts the test again on a display of its own; its output, or nullopt
// with the reason when there is no Xvfb.
std::optional<QByteArray> runOnXvfb(int &exitCode, QString &why)
{
    const QString xvfbPath = QStandardPaths::findExecutable(QStringLiteral("Xvfb"));
    if (xvfbPath.isEmpty()) {
        why = QStringLiteral("Xvfb is not installed");
        return std::nullopt;
    }
    QProcess xvfb;
    xvfb.start(xvfbPath, {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"), QStringLiteral("0"),
                          QStringLiteral("1024x768x24"), QStringLiteral("-nolisten"), QStringLiteral("tcp")});
    QByteArray display;
    if (!xvfb.waitForStarted(5000) || !waitFor([&] {
            display += xvfb.readAllStandardOutput();
            return display.endsWith('\n');
        }, 10000)) {
        why = QStringLiteral("Xvfb did not start");
        return std::nullopt;
    }
    QProcess child;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    env.insert(QStringLiteral("DISPLAY"), u':' + QString::fromLatin1(display.trimmed()));
    env.insert(QStringLiteral("LIBGL_ALWAYS_SOFTWARE"), QStringLiteral("1"));
    child.setProcessEnvironment(env);
    child.setProcessChannelMode(QProcess::MergedChannels);
    child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--gtest_filter=Video.*")});
    child.waitForFinished(90000);
    exitCode = child.exitStatus() == QProcess::NormalExit ? child.exitCode() : -1;
    const QByteArray out = child.readAll();
    xvfb.terminate();
    xvfb.waitForFinished(5000);
    return out;
}

} // namespace

TEST(Video, TheWidgetShowsTheColoursOfTheTestPatternAtTheirPlaces)
{
    if (QGuiApplication::platformName() != QStringLiteral("xcb")) {
        int exitCode = -1;
        QString why;
        const auto out = runOnXvfb(exitCode, why);
        if (!out)
            GTEST_SKIP() << qPrintable(why);
        if (out->contains("[  SKIPPED ]"))
            GTEST_SKIP() << out->constData();
        EXPECT_EQ(exitCode, 0) << out->constData();
        return;
    }

    QTemporaryDir dir;
    const QString film = dir.filePath(QStringLiteral("film.mp4"));
    if (!makeMedia(film, fourColours(false)))
        GTEST_SKIP() << "ffmpeg could not make the test media";
    MpvPlayer player(videoPlayerOptions());
    ASSERT_TRUE(player.isValid());
    MpvMedia media(player);
    // Declared after the player: the render context goes before the handle.
    QWidget window;
    auto *video = static_cast<MpvVideoWidget *>(media.createVideoWidget(&window));
    window.resize(320, 180);
    video->setGeometry(0, 0, 320, 180);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    media.setVideoEnabled(true);
    if (!waitFor([&] { return video->hasRenderContext(); }, 5000))
        GTEST_SKIP() << "no OpenGL context for mpv's render API";
    player.setURL(film);

    struct Row { QPoint at; QColor want; };
    const Row rows[] = {{{80, 45}, Qt::red}, {{240, 45}, Qt::green}, {{80, 135}, Qt::blue}, {{240, 135}, Qt::white}};
    QImage frame;
    // Until the last square has come, or the time is up.
    waitFor([&] {
        frame = video->grabFramebuffer();
        return frame.pixelColor(240, 135).lightness() > 200;
    }, 10000);
    for (const Row &row : rows) {
        const QColor got = frame.pixelColor(row.at);
        EXPECT_NEAR(got.red(), row.want.red(), 4) << row.at.x() << "," << row.at.y();
        EXPECT_NEAR(got.green(), row.want.green(), 4) << row.at.x() << "," << row.at.y();
        EXPECT_NEAR(got.blue(), row.want.blue(), 4) << row.at.x() << "," << row.at.y();
    }
}
