#pragma once

// The program on fakes, set up for the dictation tests: a language file of
// its own (so that the texts compared here do not depend on the shipped
// translations, and so that some entries carry the "&" that TogliAmp must
// take out), the four seconds settings, and helpers to open a media file,
// type into the editor and work the modal input dialog.

#include "TestApp.h"
#include "WithForm4.h"

#include "dictation/Form4.h"
#include "editor/Form2.h"
#include "player/Form1.h"

#include <QAction>
#include <QLineEdit>
#include <QPushButton>
#include <QApplication>
#include <QTimer>
#include <functional>
#include <gtest/gtest.h>
#include <map>

namespace dictation {

inline const std::map<int, QString> &languageEntries()
{
    static const std::map<int, QString> entries = {
        {1, QStringLiteral("Quill&mere")},
        {7, QStringLiteral("Play")},
        {8, QStringLiteral("Pausa")},
        {31, QStringLiteral("Secondi indietro a ogni pausa:")},
        {32, QStringLiteral("Secondi indietro")},
        {33, QStringLiteral("Il valore &massimo è")},
        {34, QStringLiteral("Secondi di ogni salto:")},
        {35, QStringLiteral("Salto")},
        {38, QStringLiteral("Vai al secondo:")},
        {39, QStringLiteral("Vai a")},
        {40, QStringLiteral("Il valore &minimo è")},
        {124, QStringLiteral("Play &intelligente")},
        {125, QStringLiteral("Tempo di riproduzione prima della pausa")},
        {126, QStringLiteral("Tempo di pausa prima della riproduzione")},
        {127, QStringLiteral("Il player si ferma & torna indietro da solo")},
        {128, QStringLiteral("(consigliati nnn secondi)")},
    };
    return entries;
}

// 151 lines; every entry not listed above is a distinct placeholder.
inline QByteArray languageFile()
{
    QByteArray out;
    for (int i = 0; i < 151; ++i) {
        const auto it = languageEntries().find(i);
        const QString text = it != languageEntries().end() ? it->second : QStringLiteral("Entry %1").arg(i);
        out += QString::number(i).rightJustified(3, u'0').toUtf8() + text.toUtf8() + "\r\n";
    }
    return out;
}

struct Preset
{
    qint16 secSalto = 5;
    qint16 secIndietro = 2;
    qint16 tempoPlay = 3;
    qint16 tempoPause = 3; // below 3 is replaced at start; set ctx() after start for less
    bool smartPlay = false;
    bool noPlayOnWrite = false;
};

inline void prepareFolder(const ProgramFolder &folder, const Preset &s)
{
    folder.write(QStringLiteral("Files/Lang/Dictation.lng"), languageFile());
    folder.setSettingsLine(1, QStringLiteral("Dictation.lng"));
    folder.setSettingsLine(4, QString::number(s.secSalto));
    folder.setSettingsLine(5, QString::number(s.secIndietro));
    folder.setSettingsLine(21, QString::number(s.tempoPlay));
    folder.setSettingsLine(22, QString::number(s.tempoPause));
    folder.setSettingsLine(23, s.smartPlay ? QStringLiteral("1") : QStringLiteral("0"));
    folder.setSettingsLine(24, QStringLiteral("0")); // no update check
    folder.setSettingsLine(25, s.noPlayOnWrite ? QStringLiteral("1") : QStringLiteral("0"));
}

struct DictationApp
{
    TestApp app;
    QString path;

    explicit DictationApp(const Preset &s = {})
    {
        prepareFolder(app.folder, s);
        EXPECT_TRUE(app.start());
    }

    Form1 &f() { return app.form1(); }
    AppContext &ctx() { return app.ctx(); }
    FakePlayer &player() { return *app.player; }
    const QString &play() { return ctx().Lingua(7); }
    const QString &pause() { return ctx().Lingua(8); }
    QString L(int entry) { return TogliAmp(ctx().Lingua(entry)); }
    double position() { return player().currentPosition(); }

    // Opens a media file; it starts playing at position 0.
    void open(double seconds = 600.0)
    {
        path = app.mediaFile(QStringLiteral("interview.wav"), seconds);
        f().ApriMedia(path);
        player().clearLog();
    }

    // A change of the editor's text, as a typist makes it.
    void type(const QString &text)
    {
        app.form2().RTB->insertPlainText(text);
        // TODO: Form2::RTB_Change arms the typing watch; remove this once the
        // editor's change handler does it.
        if (f().mnuNoPlayOnWrite->isChecked())
            f().Timer6->setInterval(1300);
    }

    QString settingsLine(int line) { return app.folder.settingsLines().value(line - 1); }
};


} // namespace dictation
