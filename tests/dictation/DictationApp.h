#pragma once

// The program on fakes for the dictation tests, with a language file of its
// own: the texts compared here do not follow the shipped translations, and
// some entries carry the "&" that TogliAmp must take out.

#include "TestApp.h"
#include "WithForm4.h"

#include "editor/Form2.h"
#include "player/Form1.h"

#include <QAction>
#include <QLineEdit>
#include <QPushButton>
#include <gtest/gtest.h>
#include <map>

using namespace Qt::StringLiterals;

namespace dictation {

// 151 lines; every entry not listed is a distinct placeholder.
inline QByteArray languageFile()
{
    static const std::map<int, const char *> entries = {
        {1, "Quill&mere"}, {7, "Play"}, {8, "Pausa"}, {31, "Secondi indietro a ogni pausa:"},
        {32, "Secondi indietro"}, {33, "Il valore &massimo è"}, {34, "Secondi di ogni salto:"}, {35, "Salto"},
        {38, "Vai al secondo:"}, {39, "Vai a"}, {40, "Il valore &minimo è"}, {124, "Play &intelligente"},
        {125, "Tempo di riproduzione prima della pausa"}, {126, "Tempo di pausa prima della riproduzione"},
        {127, "Il player si ferma & torna indietro da solo"}, {128, "(consigliati nnn secondi)"}};
    QByteArray out;
    for (int i = 0; i < 151; ++i) {
        const auto it = entries.find(i);
        out += QByteArray::number(i).rightJustified(3, '0')
               + (it != entries.end() ? QByteArray(it->second) : "Entry " + QByteArray::number(i)) + "\r\n";
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
    folder.write(u"Files/Lang/Dictation.lng"_s, languageFile());
    const std::pair<int, int> lines[] = {{1, 0}, {4, s.secSalto}, {5, s.secIndietro}, {21, s.tempoPlay},
                                         {22, s.tempoPause}, {23, s.smartPlay}, {24, 0}, {25, s.noPlayOnWrite}};
    for (const auto &[line, value] : lines) // line 24 off: no update check
        folder.setSettingsLine(line, line == 1 ? u"Dictation.lng"_s : QString::number(value));
}

struct DictationApp
{
    TestApp app;

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
    double position() { return player().currentPosition(); }
    QString log() { return player().log.join(u','); }
    QString settingsLine(int line) { return app.folder.settingsLines().value(line - 1); }

    // Opens a media file; it starts playing at position 0.
    void open(double seconds = 600.0)
    {
        f().ApriMedia(app.mediaFile(u"interview.wav"_s, seconds));
        player().clearLog();
    }

    // A change of the editor's text, as a typist makes it; the editor's
    // change handler arms the typing watch.
    void type(const QString &text) { app.form2().RTB->insertPlainText(text); }
};

} // namespace dictation
