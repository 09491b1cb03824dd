// The start of the program and its exit: which language, which windows,
// what the settings file gives, and that the settings go back to disk.

#include "TestApp.h"

#include "app/AppStyle.h"
#include "app/DecodedPictures.h"
#include "editor/Form2.h"
#include "lang/LanguageFile.h"
#include "platform/QtServices.h"
#include "platform/TextFile.h"
#include "player/Form1.h"

#include <QAction>
#include <QDir>
#include <QImageReader>
#include <QTemporaryDir>
#include <QTest>
#include <functional>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(Main, ChoosesTheLanguageByTheCountrysEnglishName)
{
    // Two letters of the English country name decide; most rows meant for
    // other countries never match, which is how the choice has always been.
    const struct { const char *country; const char *file; } cases[] = {
        {"Italy", "Italiano.lng"},  {"Hungary", "Hungarian.lng"}, {"Russia", "Russian.lng"},
        {"France", "Français.lng"}, {"Brazil", "Brazilian.lng"},  {"Spain", "English.lng"},
        {"Sweden", "English.lng"},  {"Estonia", "Spanish.lng"},    {"Portugal", "English.lng"},
        {"Svalbard And Jan Mayen", "Svenska.lng"},
    };
    for (const auto &c : cases) {
        TestApp app;
        app.folder.setSettingsLine(1, QString());
        app.system->country = QString::fromUtf8(c.country);
        ASSERT_TRUE(app.start()) << c.country;
        EXPECT_EQ(app.ctx().FileLingua, QString::fromUtf8(c.file)) << c.country;
    }
}

// Missing or broken files end the start in the fatal box, a second
// instance in the running notice; no window is made.
TEST(Main, WhatCannotStartEndsInOneMessageBox)
{
    const QString ini = u"Files/Quillmere.ini"_s;
    const auto reg = [](const char *error) { return std::pair{u"Reg Error"_s, u"Lib OCX -> Reg ERROR!\r"_s + QLatin1String(error)}; };
    LanguageTable en;
    LanguageFile::load(ProgramFolder::sourceDir() + u"/data/Files/Lang/English.lng"_s, en);
    const struct { const char *what; std::function<void(TestApp &)> set; std::pair<QString, QString> box; } cases[] = {
        {"no settings file", [&](TestApp &a) { a.folder.remove(ini); }, reg("File not found")},
        {"an empty settings file", [&](TestApp &a) { a.folder.write(ini, {}); }, reg("Input past end of file")},
        {"a folder in place of the settings file",
         [&](TestApp &a) { a.folder.remove(ini); QDir().mkpath(a.folder.file(ini)); }, reg("Path/File access error")},
        {"no language file", [](TestApp &a) { a.folder.setSettingsLine(1, u"Missing.lng"_s); }, reg("File not found")},
        {"a language in a missing folder", [](TestApp &a) { a.folder.setSettingsLine(1, u"x/M.lng"_s); },
         reg("Path not found")},
        {"152 language lines", [](TestApp &a) { a.folder.setLanguage(u"Long.lng"_s, {}, 152); },
         reg("Subscript out of range")},
        {"a second instance", [](TestApp &a) { a.system->anotherInstance = true; }, {TogliAmp(en(1)), TogliAmp(en(0))}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        TestApp app;
        c.set(app);
        EXPECT_FALSE(app.start());
        EXPECT_TRUE(app.ctx().processEnded());
        ASSERT_EQ(app.dialogs->messages.size(), 1);
        EXPECT_EQ(app.dialogs->messages[0].title, c.box.first);
        EXPECT_EQ(app.dialogs->messages[0].text, c.box.second);
        EXPECT_EQ(app.dialogs->messages[0].style, 48);
        EXPECT_EQ(app.ctx().form1(), nullptr);
    }
}

// The real lock: one holder per program folder, free again once the holder
// is gone, and another folder has a lock of its own.
TEST(Main, OneInstanceLockPerProgramFolder)
{
    QTemporaryDir a, b;
    auto first = std::make_unique<QtSystemInfo>(a.path());
    ASSERT_TRUE(first->acquireInstanceLock());
    EXPECT_FALSE(QtSystemInfo(a.path()).acquireInstanceLock());
    EXPECT_TRUE(QtSystemInfo(b.path()).acquireInstanceLock());
    first.reset();
    EXPECT_TRUE(QtSystemInfo(a.path()).acquireInstanceLock());
}

TEST(FormLoad, SettingsLinesTakeEffectWithTheirOwnRules)
{
    const auto checked = [](QAction *(Form1::*item)) { return [item](TestApp &a) { return (a.form1().*item)->isChecked(); }; };
    const auto play = [](TestApp &a) { return a.ctx().TempoPlay; };
    const auto pause = [](TestApp &a) { return a.ctx().TempoPause; };
    const auto stepBack = [](TestApp &a) { return a.ctx().SecIndietro; };
    const auto placed = [](TestApp &a) { return int(a.form2().Left() == 1500 && a.form2().Top() == 6000); };
    // A comma in the media folder ends it, and every later field moves on:
    // line 21 then feeds the pause time, line 20 the play time.
    const char *comma = "7=/media/a,b 20=0 21=4 22=9";
    // The lines set, as "line=value" with a space between them.
    const struct { const char *lines; std::function<int(TestApp &)> got; int want; } cases[] = {
        {"21=2", play, 7},
        {"22=1", pause, 7},
        {"21=40", play, 40},
        {"4=2.5", [](TestApp &a) { return a.ctx().SecSalto; }, 2},
        {"5=3.5", stepBack, 4},
        {"5=99999", stepBack, 0},
        {"23=2", checked(&Form1::mnuSmartPlay), true},
        {"23=2", [](TestApp &a) { return int(a.form1().imgDetta->pictureFile().endsWith(u"detta2.jpg"_s)); }, true},
        {"24=2", checked(&Form1::mnuCheckUpdateStartup), false},
        {"15=", checked(&Form1::mnuPrimoPiano), true},
        {"15=yes", checked(&Form1::mnuPrimoPiano), false},
        {"6=1.0", checked(&Form1::mnuTitoloCompleto), true},
        {"6=2", checked(&Form1::mnuTitoloCompleto), false},
        {"8=1", [](TestApp &a) { return int(a.form2().isVisible()); }, false},
        // A top no position can take is skipped: the knob stays where
        // IniziaVolume put it.
        {"3=1e400", [](TestApp &a) { return a.form1().Image1->Top(); }, 862},
        {comma, [](TestApp &a) { return int(a.ctx().CartellaMedia == u"/media/a"_s); }, true},
        {comma, play, 7},
        {comma, pause, 4},
        // The editor's saved position applies only when lines 13 and 14 do
        // not add up to 0; a sum beyond 16 bits is not 0, whatever it would
        // wrap to.
        {"11=1500 12=6000 13=0 14=0", placed, false},
        {"11=1500 12=6000 13=100 14=-100", placed, false},
        {"11=1500 12=6000 13=9000 14=4000", placed, true},
        {"11=1500 12=6000 13=32767 14=1", placed, true},
        {"11=1500 12=6000 13=-32768 14=-32768", placed, true},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.lines);
        TestApp app;
        for (const QString &line : QString::fromUtf8(c.lines).split(u' '))
            app.folder.setSettingsLine(line.section(u'=', 0, 0).toInt(), line.section(u'=', 1));
        ASSERT_TRUE(app.start());
        EXPECT_EQ(c.got(app), c.want);
        // The player lands at pixel (50, 50) at every start.
        EXPECT_EQ(app.form1().pos(), QPoint(50, 50));
    }
}

// The editor open at the last exit is built after the player's first paint,
// and counts as open until then.
TEST(FormLoad, TheOpenEditorComesAfterThePlayersFirstPaint)
{
    TestApp app;
    app.folder.setSettingsLine(8, u"0"_s);
    ASSERT_TRUE(app.ctx().Main());
    EXPECT_FALSE(app.form2().isVisible());
    EXPECT_EQ(app.form1().mnuMostraNascondi->text(), app.ctx().Lingua(116));
    EXPECT_TRUE(QTest::qWaitFor([&] { return app.form2().isVisible(); }, 3000));
    EXPECT_EQ(app.form1().mnuMostraNascondi->text(), app.ctx().Lingua(116));
}

// A quoted path opens the file; an unquoted one is opened as it came,
// closed again, and then given without its first and last letter, which
// names no file.
TEST(FormLoad, OnlyAQuotedCommandLineOpensTheFile)
{
    QTemporaryDir media;
    const QString path = media.filePath(u"a b.wav"_s);
    ASSERT_TRUE(TextFile::writeBytes(path, "RIFF"));
    TestApp quoted(u'"' + path + u'"');
    ASSERT_TRUE(quoted.start());
    EXPECT_EQ(quoted.player->URL(), path);
    EXPECT_EQ(quoted.form1().Label4->Tag, path);
    EXPECT_EQ(quoted.form1().cmdPlay->Tag, quoted.ctx().Lingua(8));
    EXPECT_TRUE(quoted.dialogs->messages.isEmpty());

    TestApp bare(path);
    ASSERT_TRUE(bare.start());
    EXPECT_TRUE(bare.player->log.contains(u"url "_s + path));
    EXPECT_EQ(bare.player->URL(), QString());
    ASSERT_EQ(bare.dialogs->messages.size(), 1);
    EXPECT_EQ(bare.dialogs->messages[0].text, TogliAmp(bare.ctx().Lingua(98)));
    EXPECT_FALSE(bare.form1().cmdPlay->isEnabled());
}

TEST(Exit, EveryWayOutWritesTheSettingsBackInTwentyFiveLines)
{
    const std::function<void(TestApp &)> ways[] = {
        [](TestApp &a) { a.form1().mnuEsci_Click(); },
        [](TestApp &a) { QTest::keyClick(&a.form1(), Qt::Key_Q, Qt::ControlModifier); },
        [](TestApp &a) { QTest::keyClick(&a.form1(), Qt::Key_Escape); },
        [](TestApp &a) { a.form1().close(); },
    };
    int n = 0;
    for (const auto &way : ways) {
        TestApp app;
        app.folder.setSettingsLine(4, u"0"_s);
        ASSERT_TRUE(app.start());
        app.form2().hide();
        QApplication::setActiveWindow(&app.form1());
        app.form1().activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&app.form1()));
        app.ctx().SecSalto = 13;
        way(app);
        SCOPED_TRACE(n++);
        EXPECT_TRUE(app.ctx().processEnded());
        const QStringList lines = app.folder.settingsLines();
        EXPECT_EQ(lines.size(), 25);
        EXPECT_EQ(lines.value(3), u"13"_s);
        EXPECT_EQ(lines.value(7), u"1"_s); // editor hidden
    }
}

// The pictures decoded beside the start: each once, as its file reads (by
// its content when its name gives another format), and nothing for a file
// that doesn't read or wasn't asked for.
TEST(DecodedPictures, EachPictureOnceAsItsFileReads)
{
    QTemporaryDir dir;
    QImage red(4, 3, QImage::Format_RGB32);
    red.fill(Qt::red);
    ASSERT_TRUE(red.save(dir.filePath(u"a.png"_s)));
    ASSERT_TRUE(red.save(dir.filePath(u"png.jpg"_s), "png"));
    ASSERT_TRUE(TextFile::writeBytes(dir.filePath(u"bad.jpg"_s), "not a picture"));
    DecodedPictures pictures(dir.path(), {u"a.png"_s, u"png.jpg"_s, u"bad.jpg"_s, u"missing.bmp"_s});
    const QImage wanted = QImageReader(dir.filePath(u"a.png"_s)).read();
    EXPECT_EQ(pictures.take(dir.filePath(u"a.png"_s)), wanted);
    EXPECT_EQ(pictures.take(dir.filePath(u"png.jpg"_s)), wanted);
    for (const char *none : {"a.png", "bad.jpg", "missing.bmp", "other.png"})
        EXPECT_TRUE(pictures.take(dir.filePath(QString::fromLatin1(none))).isNull()) << none;
}

// The menu bar's overflow icon, made when first drawn, is the style's own;
// every other icon comes straight from the style.
TEST(AppStyle, TheOverflowIconIsTheStylesOwnWhenDrawn)
{
    AppStyle style;
    QStyle *base = style.baseStyle();
    for (const QStyle::StandardPixmap which : {QStyle::SP_ToolBarHorizontalExtensionButton, QStyle::SP_ArrowUp}) {
        const QIcon own = base->standardIcon(which);
        const QIcon made = style.standardIcon(which);
        EXPECT_EQ(made.availableSizes(), own.availableSizes()) << which;
        EXPECT_EQ(made.pixmap(16).toImage(), own.pixmap(16).toImage()) << which;
    }
}
