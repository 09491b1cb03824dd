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

using namespace Qt::StringLiterals;

namespace dictation {

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
    folder.setLanguage(u"Dictation.lng"_s,
                       {{1, u"Quill&mere"_s}, {7, u"Play"_s}, {8, u"Pausa"_s}, {32, u"Secondi indietro"_s},
                        {31, u"Secondi indietro a ogni pausa:"_s}, {33, u"Il valore &massimo è"_s}, {35, u"Salto"_s},
                        {34, u"Secondi di ogni salto:"_s}, {38, u"Vai al secondo:"_s}, {39, u"Vai a"_s},
                        {40, u"Il valore &minimo è"_s}, {124, u"Play &intelligente"_s},
                        {125, u"Tempo di riproduzione prima della pausa"_s},
                        {126, u"Tempo di pausa prima della riproduzione"_s},
                        {127, u"Il player si ferma & torna indietro da solo"_s},
                        {128, u"(consigliati nnn secondi)"_s}});
    const std::pair<int, int> lines[] = {{4, s.secSalto}, {5, s.secIndietro}, {21, s.tempoPlay}, {22, s.tempoPause},
                                         {23, s.smartPlay}, {24, 0}, {25, s.noPlayOnWrite}};
    for (const auto &[line, value] : lines) // line 24 off: no update check
        folder.setSettingsLine(line, QString::number(value));
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
