#include "app/AppContext.h"

#include "app/SettingsFile.h"
#include "bookmarks/Form3.h"
#include "editor/Form2.h"
#include "editor/UndoHistory.h"
#include "editor/journal/RecoveryJournal.h"
#include "outside/frmInformazioni.h"
#include "platform/QtServices.h"
#include "platform/TextFile.h"
#include "player/Form1.h"
#include "mediaview/frmMedia.h"
#include "recorder/frmAudioRec.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QPixmap>

QString TogliAmp(const QString &s)
{
    QString out = s;
    out.remove(u'&');
    return out;
}

AppContext::AppContext(QString programFolder, Services services, QString commandLine)
    : m_programFolder(std::move(programFolder))
    , m_services(std::move(services))
    , m_commandLine(std::move(commandLine))
    , m_undo(std::make_unique<UndoHistory>())
{
    currentDirectory = QDir::currentPath();
    if (!m_services.printers)
        m_services.printers = std::make_unique<QtPrinterSetup>();
    if (!m_services.audioInput)
        m_services.audioInput = std::make_unique<NoAudioInput>();
}

AppContext::~AppContext()
{
    // The journal follows the editor's document: it goes before the windows.
    m_journal.reset();
    // The windows go first: their timers and the player refer to the rest.
    m_frmInformazioni.reset();
    m_frmMedia.reset();
    // A recording still running is finished as a closed window finishes it.
    m_frmAudioRec.reset();
    m_form1.reset();
    m_form3.reset();
    m_form2.reset();
}

QString AppContext::filesPath(const QString &name) const
{
    return m_programFolder + QStringLiteral("/Files/") + name;
}

QImage AppContext::decodedAhead(const QString &path)
{
    return m_services.pictures ? m_services.pictures->take(path) : QImage();
}

bool AppContext::loadPicture(PictureBox *box, const QString &name)
{
    const QString path = filesPath(name);
    return box->LoadPicture(path, decodedAhead(path));
}

QPixmap AppContext::picture(const QString &name)
{
    const QString path = filesPath(name);
    const QImage decoded = decodedAhead(path);
    return QPixmap::fromImage(decoded.isNull() ? DecodedPictures::read(path) : decoded);
}

QString AppContext::languagePath() const
{
    return m_programFolder + QStringLiteral("/Files/Lang/") + FileLingua;
}

Form2 *AppContext::form2()
{
    if (!m_form2) {
        m_form2 = std::make_unique<Form2>(*this);
        m_form2->Form_Load();
    }
    return m_form2.get();
}

frmAudioRec *AppContext::recorder()
{
    if (!m_frmAudioRec)
        m_frmAudioRec = std::make_unique<frmAudioRec>(*this);
    if (!m_frmAudioRec->isLoaded())
        m_frmAudioRec->Form_Load();
    return m_frmAudioRec.get();
}

Form3 *AppContext::form3()
{
    // Touching the window loads it, hidden, and its Form_Load fills the lists
    // from the table: so unloading a window that some routine only touched
    // (Salva reads its geometry) gives the table back whole.
    if (!m_form3) {
        m_form3 = std::make_unique<Form3>(*this);
        m_form3->Form_Load();
    }
    return m_form3.get();
}

void AppContext::unloadForm3()
{
    if (!m_form3)
        return;
    m_form3->Form_Unload();
    m_form3->hide();
    m_form3.reset();
}

frmInformazioni *AppContext::formInformazioni()
{
    if (!m_frmInformazioni) {
        m_frmInformazioni = std::make_unique<frmInformazioni>(*this);
        m_frmInformazioni->Form_Load();
    }
    return m_frmInformazioni.get();
}

void AppContext::unloadFormInformazioni()
{
    if (!m_frmInformazioni)
        return;
    frmInformazioni *window = m_frmInformazioni.release();
    window->Form_Unload();
    // A click or key of the window itself unloads it: free it once that
    // event is done. Its timer goes now, with the clock still there.
    window->Timer1.reset();
    window->deleteLater();
}

void AppContext::endProcess()
{
    if (m_ended)
        return;
    m_ended = true;
    // A normal end leaves no journal: the text was saved or given up.
    if (m_journal)
        m_journal->discard();
    if (onEndProcess)
        onEndProcess();
}

void AppContext::setMousePointer(int pointer)
{
    if (pointer == mousePointer)
        return;
    mousePointer = pointer;
    if (!qobject_cast<QApplication *>(QCoreApplication::instance()))
        return;
    while (QApplication::overrideCursor())
        QApplication::restoreOverrideCursor();
    if (pointer == 11)
        QApplication::setOverrideCursor(Qt::WaitCursor);
}

int AppContext::msgBox(const QString &text, int style, const QString &title)
{
    return dialogs().msgBox(text, style, title);
}

int AppContext::warn(int entry)
{
    return msgBox(TogliAmp(Lingua(entry)), MsgBox::Exclamation, TogliAmp(Lingua(1)));
}

void AppContext::loadLanguage()
{
    LanguageFile::load(languagePath(), Lingua);
}

QString AppContext::FileDlg(const FileDlgArgs &args, QStringList *more)
{
    FileDialogRequest request;
    request.open = args.open;
    request.owner = args.owner;
    request.title = args.title;
    // The file name field holds at most 255 characters and its terminator.
    request.fileName = args.fileName.left(255);
    request.defaultExtension = args.defaultExtension;
    request.initialFolder = args.initialFolder.isEmpty() ? currentDirectory : args.initialFolder;
    request.filter = args.filter;
    request.filterIndex = args.filterIndex;
    request.flags = args.flags ? *args.flags : 0;

    const FileDialogAnswer answer = dialogs().fileDialog(request);
    if (answer.parts.isEmpty() || answer.parts.first().isEmpty())
        return QString();
    if (args.flags)
        *args.flags = answer.flags;

    QString result;
    if (!(request.flags & 512) || answer.parts.size() == 1) {
        result = answer.parts.first();
    } else {
        QString folder = answer.parts.first();
        if (!folder.endsWith(u'/'))
            folder += u'/';
        result = folder + answer.parts.at(1);
        if (more) {
            more->clear();
            for (int i = 2; i < answer.parts.size(); ++i)
                more->append(folder + answer.parts.at(i));
        }
    }
    // Like the system's dialog, a successful choice moves the current
    // directory to the folder of the chosen file.
    const QString folder = QFileInfo(result).absolutePath();
    if (!folder.isEmpty())
        currentDirectory = folder;
    return result;
}

bool AppContext::Main()
{
    // Any failure of these steps ends the start with the same box.
    auto fatal = [this](const QString &description) {
        msgBox(QStringLiteral("Lib OCX -> Reg ERROR!\r") + description, MsgBox::Exclamation,
               QStringLiteral("Reg Error"));
        endProcess();
        return false;
    };

    // The description of the error in force when a file will not open.
    auto openError = [](const QString &path) {
        const QFileInfo info(path);
        if (!info.dir().exists())
            return QStringLiteral("Path not found");
        if (!info.exists())
            return QStringLiteral("File not found");
        return QStringLiteral("Path/File access error");
    };

    // 1. The language file named in the first field of the settings file.
    // An empty file has no first field to read, which fails like a missing
    // file.
    const auto settings = TextFile::readLines(settingsPath());
    if (!settings)
        return fatal(openError(settingsPath()));
    SettingsFieldReader reader(*settings);
    const auto firstField = reader.text();
    if (!firstField)
        return fatal(QStringLiteral("Input past end of file"));
    FileLingua = *firstField;

    // 2. None named: choose by the first two letters of the English name of
    // the user's country. The look-up is kept exactly as it always was,
    // although most of its rows can never match the country they were
    // meant for.
    if (FileLingua.trimmed().isEmpty()) {
        const QString code = system().countryEnglishName().toLower().left(2);
        static const std::pair<const char *, const char *> table[] = {
            {"br", "Brazilian"}, {"pt", "Brazilian"}, {"hu", "Hungarian"}, {"it", "Italiano"},
            {"nl", "Nederlands"}, {"ru", "Russian"}, {"es", "Spanish"}, {"fr", "Français"},
            {"sv", "Svenska"}, {"sv-fi", "Svenska"},
        };
        QString name = QStringLiteral("English");
        for (const auto &[key, file] : table) {
            if (code == QLatin1String(key)) {
                name = QString::fromUtf8(file);
                break;
            }
        }
        FileLingua = name + QStringLiteral(".lng");
    }

    // 3. The language table; more than 151 lines is a failure here.
    switch (LanguageFile::load(languagePath(), Lingua)) {
    case LanguageFile::Result::Missing:
        return fatal(openError(languagePath()));
    case LanguageFile::Result::TooLong:
        return fatal(QStringLiteral("Subscript out of range"));
    case LanguageFile::Result::Loaded:
        break;
    }

    // 4. One instance at a time.
    if (!system().acquireInstanceLock()) {
        msgBox(TogliAmp(Lingua(0)), MsgBox::Exclamation, TogliAmp(Lingua(1)));
        endProcess();
        return false;
    }

    // 5, 6. The rich-text control is part of the toolkit: nothing to
    // register.

    // The journal of unsaved text belongs to the one running instance.
    m_journal = std::make_unique<RecoveryJournal>(timers(), filesPath(QStringLiteral("Recovery")));

    // 7. Create the player window; its start-up routines run now.
    m_form1 = std::make_unique<Form1>(*this);
    m_form1->Form_Initialize();
    m_form1->Form_Load();
    if (m_ended)
        return false;

    // 8. Show it.
    m_form1->show();
    // The media window, beside the player, as it was left at the last exit.
    if (m_services.media) {
        m_frmMedia = std::make_unique<frmMedia>(*this, *m_services.media);
        m_frmMedia->restoreShown();
    }
    return true;
}
