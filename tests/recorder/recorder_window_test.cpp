// The recorder window on the scripted sound source and the virtual clock.

#include "Soxi.h"
#include "TestApp.h"

#include "platform/LazyAudioInput.h"
#include "player/Form1.h"
#include "recorder/WaveIn.h"
#include "recorder/frmAudioRec.h"

#include <QAccessible>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace {

struct Recorder
{
    TestApp app;
    frmAudioRec *rec = nullptr;
    QString target;

    Recorder()
    {
        app.start();
        app.form1().mnuRegistra_Click();
        rec = app.ctx().existingRecorder();
        rec->now = [this] { return app.clock.now(); };
        target = app.folder.path() + QStringLiteral("/take.wav");
    }
    void click(QPushButton *b) { QTest::mouseClick(b, Qt::LeftButton); }
    void record()
    {
        app.dialogs->answerFile(target);
        click(rec->btnStart);
    }
    QString L(int n) { return app.ctx().Lingua(n); }
    // A second of 16-bit stereo 44100 Hz sound at full scale.
    void second() { app.audio->deliver(QByteArray::fromHex("ff7f0080").repeated(44100)); }
};

} // namespace

TEST(Recorder, OpeningStopsThePlayerAndProposesTheFirstFreeName)
{
    TestApp app;
    app.start();
    app.folder.write(QStringLiteral("Rec 01.wav"), "x");
    app.folder.write(QStringLiteral("Rec 02.wav"), "x");
    app.form1().ApriMedia(app.mediaFile());
    app.form1().cmdRec_Click();

    frmAudioRec *rec = app.ctx().existingRecorder();
    ASSERT_NE(rec, nullptr);
    EXPECT_TRUE(rec->isVisible());
    EXPECT_EQ(app.form1().cmdPlay->Tag, app.ctx().Lingua(7));
    EXPECT_EQ(rec->txtFile->text(), app.folder.path() + QStringLiteral("/Rec 03.wav"));
    for (QWidget *w : std::initializer_list<QWidget *>{rec->txtFile, rec->cmbChannels, rec->cmbFrequency,
                                                        rec->cmbBits, rec->btnStart, rec->btnStop,
                                                        rec->picPeakLeft, rec->picPeakRight})
        EXPECT_FALSE(QAccessible::queryAccessibleInterface(w)->text(QAccessible::Name).isEmpty())
            << w->objectName().toStdString();
    EXPECT_NE(QAccessible::queryAccessibleInterface(rec->picPeakLeft)->valueInterface(), nullptr);

    // The file the recorder names is never opened in the player.
    app.dialogs->answerFile(rec->txtFile->text());
    app.folder.write(QStringLiteral("Rec 03.wav"), "RIFF");
    app.form1().mnuApri_Click();
    EXPECT_NE(app.player->URL(), rec->txtFile->text());
}

TEST(Recorder, ARecordingRunsPausesAndStopsIntoAFileAnyReaderOpens)
{
    Recorder r;
    r.record();
    EXPECT_EQ(r.app.audio->calls, QStringList(QStringLiteral("start 2x16x44100")));
    EXPECT_EQ(r.rec->lblState->text(), r.L(113));
    EXPECT_FALSE(r.rec->txtFile->isEnabled());

    for (int s = 0; s < 3; ++s) {
        r.second();
        r.app.advance(1000);
    }
    EXPECT_EQ(r.rec->lblTime->text(), QStringLiteral("00:00:02")); // whole buffers only
    // Full scale: the bar is the well's width less the control's margin.
    EXPECT_EQ(r.rec->picPeakLeft->value(), frmAudioRec::ScaleWidth - 110);
    EXPECT_EQ(r.rec->picPeakRight->value(), frmAudioRec::ScaleWidth - 110);

    r.click(r.rec->btnStart); // pause
    EXPECT_EQ(r.rec->lblState->text(), r.L(114));
    const QString clock = r.rec->lblTime->text();
    r.second();
    r.app.advance(1000);
    EXPECT_EQ(r.rec->lblTime->text(), clock);

    r.click(r.rec->btnStop); // stop while paused
    EXPECT_TRUE(r.rec->txtFile->isEnabled());
    EXPECT_EQ(soxi(r.target), (fileBytes(r.target).size() - 44) / 4);
}

TEST(Recorder, CancelOrRefusingToOverwriteStartsNothing)
{
    Recorder r;
    r.click(r.rec->btnStart); // the dialog is cancelled
    EXPECT_EQ(r.rec->txtFile->text(), QString());
    r.click(r.rec->btnStart); // now taken for a resume of nothing
    EXPECT_EQ(r.rec->btnStartTag, QStringLiteral("Pause"));
    EXPECT_EQ(r.rec->lblState->text(), r.L(113));
    EXPECT_TRUE(r.app.audio->calls.filter(QStringLiteral("start")).isEmpty());

    Recorder o;
    o.app.folder.write(QStringLiteral("take.wav"), "mine");
    o.app.dialogs->msgBoxAnswers.push_back(MsgBox::No);
    o.record();
    ASSERT_EQ(o.app.dialogs->messages.size(), 1);
    EXPECT_TRUE(o.app.audio->calls.isEmpty());
    EXPECT_EQ(o.app.folder.read(QStringLiteral("take.wav")), QByteArray("mine"));
}

TEST(Recorder, ALostDeviceOrClosingTheWindowFinishesTheFile)
{
    Recorder r;
    r.record();
    r.second();
    r.app.audio->lose(QStringLiteral("Connection terminated"));
    r.app.advance(10);
    ASSERT_EQ(r.app.dialogs->messages.size(), 1);
    EXPECT_EQ(r.app.dialogs->messages[0].text, TogliAmp(r.L(141)));
    EXPECT_EQ(r.rec->btnStartTag, QString());
    EXPECT_GT(soxi(r.target), 0); // the file is finished

    Recorder c;
    c.record();
    c.second();
    c.rec->close();
    EXPECT_FALSE(c.rec->waveIn().CattureInCorso);
    EXPECT_EQ(soxi(c.target), (21 * 8192 + 1) / 4);
}

// A program folder without the sound input module refuses every capture as
// a machine without an input device does.
TEST(LazyAudioInput, WithoutItsModuleEveryStartIsRefused)
{
    QTemporaryDir empty;
    LazyAudioInput input(empty.path());
    const QString refusal = NoAudioInput().start({});
    EXPECT_EQ(input.start({}), refusal);
    input.suspend();
    input.close();
    EXPECT_EQ(input.start({}), refusal);
}
