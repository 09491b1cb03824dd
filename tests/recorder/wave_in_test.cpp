// The capture engine and its WAV file, driven buffer by buffer.

#include "Soxi.h"

#include "platform/fake/FakeAudioInput.h"
#include "recorder/RecorderText.h"
#include "recorder/WaveIn.h"

#include <QTemporaryDir>
#include <QtEndian>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <csignal>

namespace {

// Bytes that differ from buffer to buffer and inside each one.
QByteArray pattern(qsizetype n, int seed)
{
    QByteArray b(n, '\0');
    for (qsizetype i = 0; i < n; ++i)
        b[i] = char((i * 7 + seed * 31) & 0xFF);
    return b;
}

struct Rig
{
    QTemporaryDir dir;
    FakeAudioInput source;
    WaveIn engine{source};
    QStringList messages;
    QString path = dir.filePath(QStringLiteral("take.wav"));

    Rig()
    {
        engine.message = [this](const QString &text, int style, const QString &title) {
            messages.append(QStringLiteral("%1|%2|%3").arg(text).arg(style).arg(title));
            return 1;
        };
        engine.AggancioCattura(true);
    }
};

} // namespace

TEST(WaveIn, EveryOfferedFormatGivesTheHeaderAnIndependentReaderExpects)
{
    for (int channels : {2, 1})
        for (int rate : {48000, 44100, 22050, 11025, 8000})
            for (int bits : {16, 8}) {
                SCOPED_TRACE(testing::Message() << channels << " ch " << rate << " Hz " << bits << " bit");
                Rig rig;
                rig.engine.AvviaCattura(qint16(channels), qint16(bits), rate, rig.path);
                rig.source.deliver(pattern(2 * rig.engine.DimBuffer, 1));
                rig.engine.FermaCattura();

                EXPECT_EQ(qFromLittleEndian<quint32>(fileBytes(rig.path).leftJustified(8, 0).constData() + 4), quint32(2 * 8192 + 1 + 36));
                for (const auto &[field, want] : {std::pair{"-c", channels}, {"-r", rate}, {"-b", bits}})
                    EXPECT_EQ(soxi(rig.path, field), want) << field;
                EXPECT_EQ(soxi(rig.path), (2 * 8192 + 1) / (channels * bits / 8));
            }
}

TEST(WaveIn, BuffersGoInOrderAndAPauseOrAStopDropsTheBufferBeingFilled)
{
    Rig rig;
    rig.engine.AvviaCattura(2, 16, 44100, rig.path);
    const int dim = rig.engine.DimBuffer;
    // Twelve buffers and a half, in pieces that never line up with a buffer:
    // more than the queue holds, so every buffer must come back to it.
    const QByteArray stream = pattern(12 * dim + dim / 2, 3), kept = pattern(dim + dim / 2, 2);
    for (qsizetype at = 0; at < stream.size(); at += 3000)
        rig.source.deliver(stream.mid(at, 3000));
    rig.engine.PausaCattura(); // drops the half buffer and what comes in the pause
    rig.source.deliver(pattern(3 * dim, 8));
    rig.engine.PausaCattura();
    rig.source.deliver(kept); // the stop drops its second half
    rig.engine.FermaCattura();

    // The header, the blocks with the first data byte and one byte behind
    // the last set to 0.
    const QByteArray file = fileBytes(rig.path);
    QByteArray data = stream.left(12 * dim) + kept.left(dim);
    data[0] = '\0';
    EXPECT_EQ(file, file.left(44) + data + QByteArray(1, '\0'));
    EXPECT_EQ(rig.source.calls, QStringList({QStringLiteral("start 2x16x44100"), QStringLiteral("suspend"),
                                             QStringLiteral("resume"), QStringLiteral("close")}));
}

TEST(WaveIn, DoubleHookIsRefusedOnceAndARefusedDeviceIsToldInItsOwnWords)
{
    Rig rig;
    rig.engine.AggancioCattura(true);
    EXPECT_EQ(rig.messages, QStringList(QStringLiteral("Double-hooking not permited!|16|ERROR!")));
    EXPECT_TRUE(rig.engine.hooked());

    rig.source.refusal = QStringLiteral("  No device.  ");
    rig.engine.AvviaCattura(2, 16, 44100, rig.path);
    EXPECT_EQ(rig.messages.last(), QStringLiteral("No device.|0|"));
    EXPECT_EQ(rig.engine.ByteRegistrati(), 45); // stands still; the window goes on
}

TEST(WaveIn, AFullDiskEndsWithItsEntryAndAPlayableFile)
{
    // A file size limit stands in for a full disk: the third block fails.
    Rig full;
    full.engine.AvviaCattura(2, 16, 44100, full.path);
    rlimit old{};
    getrlimit(RLIMIT_FSIZE, &old);
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit small = old;
    small.rlim_cur = 44 + 2 * 8192 + 4000;
    setrlimit(RLIMIT_FSIZE, &small);
    full.source.deliver(pattern(4 * 8192, 2));
    full.engine.FermaCattura();
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, oldHandler);

    EXPECT_EQ(full.engine.takeFailure(), 140);
    EXPECT_EQ(fileBytes(full.path).size(), 44 + 2 * 8192 + 1);
    EXPECT_EQ(soxi(full.path), (2 * 8192 + 1) / 4);
}

TEST(WaveIn, PeaksReadOneMillisecondOfTheBufferBeforeTheLastFinished)
{
    // A frame repeated through the buffer, and the peaks it gives.
    const struct { int channels, bits; QByteArray frame; int left, right; } cases[] = {
        {2, 16, QByteArray::fromHex("0080ff7f"), 32768, 32767},
        {1, 16, QByteArray::fromHex("18fc"), 1000, 1000},
        {2, 8, QByteArray::fromHex("0080"), 128, 0},
        {1, 8, QByteArray::fromHex("ff"), 127, 127},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.frame.toHex().toStdString());
        Rig rig;
        rig.engine.AvviaCattura(qint16(c.channels), qint16(c.bits), 44100, QString());
        int left = -1, right = -1;
        rig.source.deliver(c.frame.repeated(rig.engine.DimBuffer / c.frame.size()));
        rig.engine.LeggiPicchi(left, right); // only buffer 0 finished: nothing yet
        EXPECT_EQ(left, -1);
        rig.source.deliver(QByteArray(rig.engine.DimBuffer, '\0'));
        rig.engine.LeggiPicchi(left, right);
        EXPECT_EQ(rig.engine.ByteRegistrati(), 2 * 8192); // no file: whole buffers
        EXPECT_EQ(left, c.left);
        EXPECT_EQ(right, c.right);
    }
}

TEST(RecorderText, ClockAndFreeRecordingName)
{
    const struct { qint32 value; bool ms; const char *want; } times[] = {
        {3725, false, "01:02:05"}, {360000, false, "100:00:00"}, {2500, true, "00:00:02"}, {3500, true, "00:00:04"}};
    for (const auto &t : times)
        EXPECT_EQ(FormatTime(t.value, t.ms), QLatin1String(t.want)) << t.value;

    QTemporaryDir dir;
    const auto name = [&](int n) { return dir.filePath(QStringLiteral("Rec %1.wav").arg(n, 2, 10, QChar(u'0'))); };
    EXPECT_EQ(freeRecordingName(dir.path()), name(1));
    for (int n = 1; n <= 99; ++n)
        QFile(name(n)).open(QIODevice::WriteOnly);
    EXPECT_EQ(freeRecordingName(dir.path()), name(100));
}
