#pragma once

#include <QString>
#include <QStringList>
#include <QtGlobal>

// The program's own version, its home on the web, and the small rules of the
// commands that lead out of the program: the version text of the update
// check, the help file's language, the credits scroll of the about box.
namespace Outside {

// The version of this release (the about box shows it as 1.15.0.2).
inline constexpr int VersionMajor = 1;
inline constexpr int VersionMinor = 15;
inline constexpr int VersionRevision = 2;

// The maker's site; the web pages and the version file live below it.
inline constexpr const char *HomeAddress = "https://www.brackenloft.net";
QString homePage();                        // the maker's home page
QString webPage(const char *path);         // HomeAddress + path
// Where the update check reads the newest version: nine digits, nothing else.
QString versionFileAddress();

// Three digits per field: "0" before a number below 100, "00" before one below
// 10. A number of 100 or more gives no field at all, so the text gets
// shorter; that is how the check has always compared and the program's
// numbers never get there.
QString versionField(int number);
QString versionText(int major, int minor, int revision);
QString ownVersionText();

// The one decision of the update check: a text of exactly nine characters
// that sorts after our own version, character by character.
bool offersNewVersion(const QString &received, const QString &own);

// The question of the check: every <BR> of the language entry becomes an
// empty line.
QString updateQuestion(const QString &entry);

// The help file's language, from the name of the language file: only these
// four help pages exist.
QString helpLanguageCode(const QString &fileLingua);

// The desktop's sound settings programs, best first; the first one that is
// installed is started (the first word is the program).
QStringList soundSettingsCommands();

// The about box's panel creeping up through its well every tick: it halts for
// 120 ticks with its lower edge on the well's, then leaves at the top and
// starts again from below.
struct CreditsScroll
{
    static constexpr int StartTop = 2200;
    int wellHeight = 2235;
    int panelHeight = 4155;
    int top = StartTop;
    qint16 n = 0;

    void tick();
};

} // namespace Outside
