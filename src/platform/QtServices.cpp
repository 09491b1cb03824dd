#include "platform/QtServices.h"

#include <QApplication>
#include <QColorDialog>
#include <QCryptographicHash>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLocale>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTimer>
#include <QUrl>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace {

class QtTimer : public Timer
{
public:
    QtTimer()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
            if (onTimeout)
                onTimeout();
        });
    }
    void setInterval(int ms) override
    {
        m_interval = ms < 0 ? 0 : ms;
        apply(true);
    }
    int interval() const override { return m_interval; }
    void setEnabled(bool enabled) override
    {
        if (enabled == m_enabled)
            return;
        m_enabled = enabled;
        apply(true);
    }
    bool enabled() const override { return m_enabled; }
    void setCoarse(bool coarse) override { m_timer.setTimerType(coarse ? Qt::CoarseTimer : Qt::PreciseTimer); }

private:
    void apply(bool restart)
    {
        if (m_enabled && m_interval > 0) {
            if (restart || !m_timer.isActive())
                m_timer.start(m_interval);
        } else {
            m_timer.stop();
        }
    }
    QTimer m_timer;
    int m_interval = 0;
    bool m_enabled = true;
};

} // namespace

std::unique_ptr<Timer> QtTimerFactory::createTimer()
{
    return std::make_unique<QtTimer>();
}

int QtDialogs::msgBox(const QString &text, int style, const QString &title)
{
    QMessageBox box(QApplication::activeWindow());
    box.setText(text);
    box.setWindowTitle(title.isEmpty() ? QApplication::applicationDisplayName() : title);
    switch (style & 0x70) {
    case MsgBox::Critical: box.setIcon(QMessageBox::Critical); break;
    case MsgBox::Question: box.setIcon(QMessageBox::Question); break;
    case MsgBox::Exclamation: box.setIcon(QMessageBox::Warning); break;
    case MsgBox::Information: box.setIcon(QMessageBox::Information); break;
    default: break;
    }
    struct Button { QMessageBox::StandardButton qt; int result; };
    QList<Button> buttons;
    switch (style & 7) {
    case MsgBox::OkCancel: buttons = {{QMessageBox::Ok, MsgBox::Ok}, {QMessageBox::Cancel, MsgBox::Cancel}}; break;
    case MsgBox::AbortRetryIgnore: buttons = {{QMessageBox::Abort, MsgBox::Abort}, {QMessageBox::Retry, MsgBox::Retry}, {QMessageBox::Ignore, MsgBox::Ignore}}; break;
    case MsgBox::YesNoCancel: buttons = {{QMessageBox::Yes, MsgBox::Yes}, {QMessageBox::No, MsgBox::No}, {QMessageBox::Cancel, MsgBox::Cancel}}; break;
    case MsgBox::YesNo: buttons = {{QMessageBox::Yes, MsgBox::Yes}, {QMessageBox::No, MsgBox::No}}; break;
    case MsgBox::RetryCancel: buttons = {{QMessageBox::Retry, MsgBox::Retry}, {QMessageBox::Cancel, MsgBox::Cancel}}; break;
    default: buttons = {{QMessageBox::Ok, MsgBox::Ok}}; break;
    }
    QMessageBox::StandardButtons all;
    for (const Button &b : buttons)
        all |= b.qt;
    box.setStandardButtons(all);
    box.setDefaultButton(buttons.first().qt);
    const int clicked = box.exec();
    for (const Button &b : buttons) {
        if (b.qt == clicked)
            return b.result;
    }
    // Closing the box by its frame answers Cancel where there is one.
    for (const Button &b : buttons) {
        if (b.result == MsgBox::Cancel)
            return MsgBox::Cancel;
    }
    return buttons.size() == 1 ? buttons.first().result : MsgBox::No;
}

QString QtDialogs::qtFilter(const QString &filter, QString *selected, int filterIndex)
{
    const QStringList parts = filter.split(QChar(0));
    QStringList entries;
    for (int i = 0; i + 1 < parts.size(); i += 2) {
        if (parts.at(i).isEmpty() && parts.at(i + 1).isEmpty())
            continue;
        QString patterns = parts.at(i + 1);
        patterns.replace(u';', u' ');
        entries.append(parts.at(i) + QStringLiteral(" (") + patterns + u')');
    }
    if (selected && filterIndex >= 1 && filterIndex <= entries.size())
        *selected = entries.at(filterIndex - 1);
    return entries.join(QStringLiteral(";;"));
}

FileDialogAnswer QtDialogs::fileDialog(const FileDialogRequest &request)
{
    QFileDialog dialog(request.owner, request.title, request.initialFolder);
    dialog.setAcceptMode(request.open ? QFileDialog::AcceptOpen : QFileDialog::AcceptSave);
    const bool multi = request.flags & 512;
    dialog.setFileMode(request.open ? (multi ? QFileDialog::ExistingFiles : QFileDialog::ExistingFile)
                                    : QFileDialog::AnyFile);
    QString selected;
    const QString filters = qtFilter(request.filter, &selected, request.filterIndex);
    if (!filters.isEmpty())
        dialog.setNameFilter(filters);
    if (!selected.isEmpty())
        dialog.selectNameFilter(selected);
    if (!request.defaultExtension.isEmpty())
        dialog.setDefaultSuffix(request.defaultExtension);
    if (!request.fileName.isEmpty())
        dialog.selectFile(request.fileName);
    // The program asks its own question before overwriting a file.
    dialog.setOption(QFileDialog::DontConfirmOverwrite, true);
    if (dialog.exec() != QDialog::Accepted)
        return {};
    const QStringList files = dialog.selectedFiles();
    FileDialogAnswer answer;
    answer.flags = request.flags;
    if (files.size() > 1) {
        answer.parts.append(QFileInfo(files.first()).absolutePath());
        for (const QString &f : files)
            answer.parts.append(QFileInfo(f).fileName());
    } else {
        answer.parts = files;
    }
    return answer;
}

bool QtDialogs::chooseColor(QWidget *owner, QColor &color)
{
    const QColor chosen = QColorDialog::getColor(color, owner);
    if (!chosen.isValid())
        return false;
    color = chosen;
    return true;
}

bool QtDialogs::chooseColorWithCustom(QWidget *owner, QColor &color, std::array<QColor, 16> &customColors)
{
    // Qt keeps one set of custom colours for the whole process; the caller's
    // set is put in before and taken back after, so that each caller has
    // its own.
    for (int i = 0; i < 16; ++i)
        QColorDialog::setCustomColor(i, customColors[size_t(i)]);
    if (!chooseColor(owner, color))
        return false;
    for (int i = 0; i < 16; ++i)
        customColors[size_t(i)] = QColorDialog::customColor(i);
    return true;
}

QStringList QtPrinterSetup::installedPrinters()
{
    return QPrinterInfo::availablePrinterNames();
}

QString QtPrinterSetup::currentPrinter(const QPrinter &printer)
{
    return printer.printerName();
}

void QtPrinterSetup::selectPrinter(QPrinter &printer, const QString &name)
{
    printer.setPrinterName(name);
}

bool QtPrinterSetup::setupDialog(QWidget *owner, QPrinter &printer)
{
    // The choice of a printer and its paper, without a page range: what is
    // printed is decided by the editor's selection. The dialog always offers
    // printing to a PDF file, so a machine without printers can print too.
    QPrintDialog dialog(&printer, owner);
    dialog.setOption(QAbstractPrintDialog::PrintToFile, true);
    dialog.setOption(QAbstractPrintDialog::PrintPageRange, false);
    dialog.setOption(QAbstractPrintDialog::PrintSelection, false);
    dialog.setOption(QAbstractPrintDialog::PrintCurrentPage, false);
    return dialog.exec() == QDialog::Accepted;
}

void QtDialogs::beep()
{
    QApplication::beep();
}

void QtShell::openUrl(const QString &url)
{
    QDesktopServices::openUrl(QUrl(url));
}

void QtShell::openFile(const QString &path)
{
    QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}

void QtShell::runCommand(const QString &command)
{
    QStringList args = QProcess::splitCommand(command);
    if (args.isEmpty())
        return;
    const QString program = args.takeFirst();
    QProcess::startDetached(program, args);
}

bool QtShell::hasProgram(const QString &name)
{
    return !QStandardPaths::findExecutable(name).isEmpty();
}

QtSystemInfo::QtSystemInfo(QString programFolder) : m_programFolder(std::move(programFolder)) {}
QtSystemInfo::~QtSystemInfo()
{
    if (m_lockFd >= 0)
        ::close(m_lockFd);
}

QString QtSystemInfo::countryEnglishName()
{
    return QLocale::territoryToString(QLocale::system().territory());
}

bool QtSystemInfo::acquireInstanceLock()
{
    // One running instance per program folder, as a portable program has
    // one settings file to write back.
    const QByteArray key = QCryptographicHash::hash(QDir(m_programFolder).canonicalPath().toUtf8(),
                                                    QCryptographicHash::Sha1).toHex().left(16);
    QString dir = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (dir.isEmpty())
        dir = QDir::tempPath();
    const QByteArray path = QFile::encodeName(dir + QStringLiteral("/quillmere-") + QString::fromLatin1(key)
                                              + QStringLiteral(".lock"));
    // A lock the system holds for the open file: it ends with the process
    // however that ends, so no stale lock is ever left to judge, and taking
    // it writes nothing to wait for on the disk.
    if (m_lockFd < 0)
        m_lockFd = ::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    return m_lockFd >= 0 && ::flock(m_lockFd, LOCK_EX | LOCK_NB) == 0;
}
