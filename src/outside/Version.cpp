#include "outside/Version.h"

namespace Outside {

QString homePage()
{
    return QString::fromLatin1(HomeAddress) + u'/';
}

QString webPage(const char *path)
{
    return QString::fromLatin1(HomeAddress) + QString::fromLatin1(path);
}

QString versionFileAddress()
{
    return webPage("/site/brackenloftfreeware/ver_qmr.txt");
}

QString versionField(int number)
{
    QString field;
    if (number < 100)
        field = QStringLiteral("0") + QString::number(number);
    if (number < 10)
        field = QStringLiteral("00") + QString::number(number);
    return field;
}

QString versionText(int major, int minor, int revision)
{
    return versionField(major) + versionField(minor) + versionField(revision);
}

QString ownVersionText()
{
    return versionText(VersionMajor, VersionMinor, VersionRevision);
}

bool offersNewVersion(const QString &received, const QString &own)
{
    // Ordinal comparison of the characters: letters sort above digits.
    return received.size() == 9 && QString::compare(received, own, Qt::CaseSensitive) > 0;
}

QString updateQuestion(const QString &entry)
{
    QString text = entry;
    text.replace(QStringLiteral("<BR>"), QStringLiteral("\r\n\r\n"));
    return text;
}

QString helpLanguageCode(const QString &fileLingua)
{
    const QString name = fileLingua.toLower();
    if (name == QLatin1String("italiano.lng"))
        return QStringLiteral("it");
    if (name == QLatin1String("russian.lng"))
        return QStringLiteral("ru");
    if (name == QLatin1String("polish.lng"))
        return QStringLiteral("pl");
    return QStringLiteral("en");
}

QStringList soundSettingsCommands()
{
    return {
        QStringLiteral("pavucontrol"),
        QStringLiteral("pavucontrol-qt"),
        QStringLiteral("pwvucontrol"),
        QStringLiteral("gnome-control-center sound"),
        QStringLiteral("systemsettings kcm_pulseaudio"),
        QStringLiteral("cinnamon-settings sound"),
        QStringLiteral("mate-volume-control"),
    };
}

void CreditsScroll::tick()
{
    if (top > wellHeight - panelHeight) {
        top -= 10;
    } else {
        n = qint16(n + 1);
        if (n >= 121)
            top -= 10;
    }
    if (top < -panelHeight) {
        top = StartTop;
        n = 0;
    }
}

} // namespace Outside
