#pragma once

#include "app/DecodedPictures.h"
#include "lang/LanguageFile.h"
#include "platform/AudioInput.h"
#include "platform/Dialogs.h"
#include "platform/MediaBackend.h"
#include "platform/PlayerControl.h"
#include "platform/PrinterSetup.h"
#include "platform/Shell.h"
#include "platform/SystemInfo.h"
#include "platform/Timer.h"
#include "platform/WebReader.h"

#include <QString>
#include <QStringList>
#include <array>
#include <functional>
#include <memory>

class Form1;
class PictureBox;
class QPixmap;
class Form2;
class Form3;
class RecoveryJournal;
class frmInformazioni;
class frmMedia;
class UndoHistory;
class frmAudioRec;
class QWidget;

// The platform services the program runs on: real ones in the application,
// fakes in tests.
struct Services
{
    std::unique_ptr<PlayerControl> player;
    std::unique_ptr<TimerFactory> timers;
    std::unique_ptr<Dialogs> dialogs;
    std::unique_ptr<Shell> shell;
    std::unique_ptr<SystemInfo> system;
    std::unique_ptr<WebReader> web; // may be absent: no update check then
    // Picture and sound for the media window; none: no media window.
    std::unique_ptr<MediaBackend> media;
    std::unique_ptr<PrinterSetup> printers; // the print system's, when not given
    std::unique_ptr<AudioInput> audioInput; // none: every start is refused
    // The pictures of the first windows, decoded ahead; none: each is
    // decoded where it is shown.
    std::unique_ptr<DecodedPictures> pictures;
};

// What one call of the file dialog wrapper is given; every argument but
// the owner has the default the wrapper documents.
struct FileDlgArgs
{
    quint32 *flags = nullptr;      // in and out
    QString initialFolder;         // empty: the current directory
    QString filter;                // name, NUL, patterns, NUL, ...
    int filterIndex = 1;
    QString defaultExtension;
    QString fileName;
    QString title;
    QWidget *owner = nullptr;
    bool open = false;
};

// The composition root: the services, the module-level state that the
// windows share, and the windows themselves. One of these is the running
// program; each test builds its own on a temporary program folder.
class AppContext
{
public:
    AppContext(QString programFolder, Services services, QString commandLine = QString());
    ~AppContext();

    AppContext(const AppContext &) = delete;
    AppContext &operator=(const AppContext &) = delete;

    // The start of the program, in its order: reads the language, refuses a
    // second instance, creates the windows and shows the player. Returns
    // false when the program is to end at once (a fatal error or a second
    // instance, both already told to the user).
    bool Main();

    // The exit: set by the exit sequence; the application's event loop ends.
    bool processEnded() const { return m_ended; }
    void endProcess();
    std::function<void()> onEndProcess;

    // Windows; created by Main (Form1, which creates Form2).
    Form1 *form1() const { return m_form1.get(); }
    // Touching the editor creates it, hidden, as touching a window of the
    // program loads it.
    Form2 *form2();
    Form2 *existingForm2() const { return m_form2.get(); }
    // The bookmark window: touching it loads it, hidden, with its lists
    // filled from BookMark; the unload runs its Form_Unload (the lists go
    // back into BookMark) and destroys it.
    Form3 *form3();
    Form3 *existingForm3() const { return m_form3.get(); }
    void unloadForm3();
    // The about box, loaded on first use; unloading runs its Form_Unload
    // and frees it once the event that asked for it has been handled.
    frmInformazioni *formInformazioni();
    frmInformazioni *existingFormInformazioni() const { return m_frmInformazioni.get(); }
    void unloadFormInformazioni();
    frmMedia *mediaWindow() const { return m_frmMedia.get(); } // with a media back-end
    // The recorder: touching it loads it (hidden), with its hook.
    frmAudioRec *recorder();
    frmAudioRec *existingRecorder() const { return m_frmAudioRec.get(); }

    // Services.
    PlayerControl &player() const { return *m_services.player; }
    TimerFactory &timers() const { return *m_services.timers; }
    Dialogs &dialogs() const { return *m_services.dialogs; }
    Shell &shell() const { return *m_services.shell; }
    SystemInfo &system() const { return *m_services.system; }
    WebReader *web() const { return m_services.web.get(); }
    PrinterSetup &printers() const { return *m_services.printers; }
    AudioInput &audioInput() const { return *m_services.audioInput; }

    // Paths below the program folder, with '/' separators.
    const QString &programFolder() const { return m_programFolder; }
    QString filesPath(const QString &name) const; // <program folder>/Files/<name>
    QString settingsPath() const { return filesPath(QStringLiteral("Quillmere.ini")); }
    QString languagePath() const; // Files/Lang/<FileLingua>
    // Shows the picture Files/<name> in `box`, decoded ahead if it was.
    bool loadPicture(PictureBox *box, const QString &name);
    // The picture Files/<name>, decoded ahead if it was; null if unreadable.
    QPixmap picture(const QString &name);

    const QString &commandLine() const { return m_commandLine; }

    // The message box the program's own warnings use: the entry without "&",
    // the program's title, the exclamation icon.
    int warn(int entry);
    int msgBox(const QString &text, int style, const QString &title);

    // The one wrapper of the system's open and save dialogs. Returns the
    // chosen path, or the empty text on cancel; with the multi-select flag
    // the extra paths come in `more`.
    QString FileDlg(const FileDlgArgs &args, QStringList *more = nullptr);

    // The process's current directory as the program sees it: the file
    // dialogs move it to the folder of the chosen file.
    QString currentDirectory;

    // Screen pointer: 0 default, 11 hourglass.
    int mousePointer = 0;
    void setMousePointer(int pointer);

    // Module-level state shared by the windows.
    QString FileLingua;
    LanguageTable Lingua;
    QString TitoloApp;
    bool OcxRegistrato = false;
    std::array<QString, 501> BookMark;
    qint16 SecSalto = 0;
    qint16 SecIndietro = 0;
    qint16 TempoPlay = 0;
    qint16 TempoPause = 0;
    QString CartellaMedia;
    qint16 FlagHoverSkin = 0;

    // The editor's document.
    qint16 TestoModificato = 0;
    QString FileEditor;
    QString FileScelto;
    qint16 NumeroDocumento = 0;
    QString NomeDocumento;

    UndoHistory &undo() { return *m_undo; }

    // The journal of the unsaved document; made by Main once this instance
    // is the only one.
    RecoveryJournal *journal() const { return m_journal.get(); }

    // Reloads the language table from Files/Lang/<FileLingua>, tolerant of
    // long files (lines past the table are skipped).
    void loadLanguage();

private:
    // The picture at `path` as the start decoded it ahead; null otherwise.
    QImage decodedAhead(const QString &path);

    QString m_programFolder;
    Services m_services;
    QString m_commandLine;
    bool m_ended = false;
    // Declared in the order of creation; destroyed the other way round.
    std::unique_ptr<UndoHistory> m_undo;
    std::unique_ptr<Form2> m_form2;
    std::unique_ptr<Form3> m_form3;
    std::unique_ptr<frmInformazioni> m_frmInformazioni;
    std::unique_ptr<Form1> m_form1;
    std::unique_ptr<RecoveryJournal> m_journal;
    std::unique_ptr<frmMedia> m_frmMedia;
    std::unique_ptr<frmAudioRec> m_frmAudioRec;
};

// Every "&" taken out: a menu text shown as plain text.
QString TogliAmp(const QString &s);
