// The recorder on a real sound server: a private PulseAudio with a null
// sink, whose monitor (remapped, so that it is listed as an input) is the
// default source, and a 1 kHz tone played into the sink.

#include "Soxi.h"

#include "platform/LazyAudioInput.h"
#include "recorder/WaveIn.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace {

class PulseTest : public ::testing::Test
{
protected:
    static bool sh(const QString &command)
    {
        QProcess p;
        p.start(QStringLiteral("sh"), {QStringLiteral("-c"), command});
        return p.waitForFinished(10000) && p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
    }
    static void SetUpTestSuite()
    {
        s_dir = new QTemporaryDir;
        const QString root = s_dir->path();
        for (const char *var : {"HOME", "XDG_RUNTIME_DIR", "PULSE_RUNTIME_PATH", "PULSE_STATE_PATH"}) {
            QDir(root).mkpath(QLatin1String(var));
            qputenv(var, QFile::encodeName(root + u'/' + QLatin1String(var)));
        }
        s_tone = root + QStringLiteral("/tone.wav");
        s_up = sh(QStringLiteral("pulseaudio --daemonize=yes --exit-idle-time=-1 --disallow-exit -n"
                                 " -L module-native-protocol-unix -L 'module-null-sink sink_name=null rate=44100'"
                                 " -L 'module-remap-source source_name=mic master=null.monitor'"
                                 " && pactl set-default-sink null && pactl set-default-source mic"
                                 " && sox -n -r 44100 -c 2 -b 16 '%1' synth 30 sine 1000 vol 0.5")
                      .arg(s_tone));
    }
    static void TearDownTestSuite()
    {
        sh(QStringLiteral("pulseaudio --kill"));
        delete s_dir;
    }
    void SetUp() override
    {
        if (!s_up)
            GTEST_SKIP() << "no private PulseAudio server could start here";
        // A low-latency stream wakes the idle sink, which otherwise holds
        // back the first second or two.
        m_player.start(QStringLiteral("paplay"), {QStringLiteral("--latency-msec=20"), s_tone});
        ASSERT_TRUE(m_player.waitForStarted());
        QTest::qWait(1000);
    }
    void TearDown() override
    {
        m_player.kill();
        m_player.waitForFinished();
    }

    static inline QTemporaryDir *s_dir = nullptr;
    static inline bool s_up = false;
    static inline QString s_tone;
    QProcess m_player;
};

} // namespace

TEST_F(PulseTest, ThreeSecondsOfAToneComeOutInLengthAndPitch)
{
    LazyAudioInput source(QStringLiteral(QM_MODULE_DIR));
    WaveIn engine(source);
    engine.message = [](const QString &text, int, const QString &) {
        ADD_FAILURE() << text.toStdString();
        return 1;
    };
    engine.AggancioCattura(true);
    const QString path = s_dir->filePath(QStringLiteral("three.wav"));
    engine.AvviaCattura(2, 16, 44100, path);
    // The length is judged from the first sound on, which the server sends
    // some milliseconds after the start.
    QElapsedTimer wait;
    wait.start();
    while (engine.ByteRegistrati() == 45 && wait.elapsed() < 3000)
        QTest::qWait(1);
    wait.restart();
    QTest::qWait(3000);
    const qint64 ms = wait.elapsed();
    engine.AggancioCattura(false);
    engine.FermaCattura();

    // Within a buffer and the server's latency (up to 100 ms) of the time.
    EXPECT_NEAR(double(soxi(path)), ms * 44.1, 2048 + 4410) << ms << " ms";

    // The pitch, from the spacing of rising zero crossings of the left
    // channel; a gap in the played tone (a starved player) is left out.
    const QByteArray data = fileBytes(path).mid(44 + 4 * 4410);
    const auto left = [&](qsizetype frame) { return qint16(quint8(data[4 * frame]) | quint8(data[4 * frame + 1]) << 8); };
    qsizetype last = -1, sum = 0;
    int periods = 0;
    for (qsizetype i = 1; i < data.size() / 4 - 1; ++i)
        if (left(i - 1) < 0 && left(i) >= 0) {
            if (const qsizetype d = i - last; last >= 0 && d > 30 && d < 60) {
                sum += d;
                ++periods;
            }
            last = i;
        }
    ASSERT_GT(periods, 1000);
    EXPECT_NEAR(44100.0 * periods / double(sum), 1000.0, 5.0);
}

TEST_F(PulseTest, AKilledRecorderLeavesAFileThatPlays)
{
    const QString path = s_dir->filePath(QStringLiteral("killed.wav"));
    QProcess recorder;
    recorder.start(QStringLiteral(QM_RECORDER_HELPER), {path});
    ASSERT_TRUE(recorder.waitForReadyRead(10000));
    ASSERT_EQ(recorder.readLine().trimmed(), QByteArray("sound"));
    QTest::qWait(2000);
    recorder.kill(); // SIGKILL
    recorder.waitForFinished();
    EXPECT_GE(soxi(path), 44100);
}
