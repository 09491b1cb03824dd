#pragma once

#include <QProcess>
#include <QStandardPaths>
#include <QString>
#include <QStringList>

// Media made by ffmpeg for a test; false when ffmpeg is missing or fails.
inline bool makeMedia(const QString &path, const QStringList &inputAndOptions)
{
    const QString ffmpeg = QStandardPaths::findExecutable(QStringLiteral("ffmpeg"));
    if (ffmpeg.isEmpty())
        return false;
    QProcess p;
    p.start(ffmpeg, QStringList{QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-y")} + inputAndOptions
                        + QStringList{path});
    return p.waitForFinished(60000) && p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
}

// One second of silence, one of a 1 kHz tone at half of full scale, one of
// silence.
inline QStringList toneBetweenSilences()
{
    return {QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"),
            QStringLiteral("aevalsrc=if(between(t\\,1\\,2)\\,0.5*sin(2*PI*1000*t)\\,0):s=44100:d=3")};
}

// Two seconds of video in four squares of known colours, red, green / blue,
// white, tagged BT.709 so that the colours come back as they went in.
inline QStringList fourColours(bool withSound)
{
    QStringList args;
    if (withSound)
        args += {QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-t"), QStringLiteral("2"),
                 QStringLiteral("-i"), QStringLiteral("sine=frequency=440"), QStringLiteral("-map"), QStringLiteral("0:a")};
    args += {QStringLiteral("-filter_complex"),
             QStringLiteral("color=c=0xff0000:s=160x90:d=2[a];color=c=0x00ff00:s=160x90:d=2[b];"
                            "color=c=0x0000ff:s=160x90:d=2[c];color=c=0xffffff:s=160x90:d=2[d];"
                            "[a][b]hstack[t];[c][d]hstack[u];"
                            "[t][u]vstack,scale=out_color_matrix=bt709:out_range=tv,format=yuv420p[v]"),
             QStringLiteral("-map"), QStringLiteral("[v]"), QStringLiteral("-c:v"), QStringLiteral("libx264"),
             QStringLiteral("-colorspace"), QStringLiteral("bt709"), QStringLiteral("-color_primaries"),
             QStringLiteral("bt709"), QStringLiteral("-color_trc"), QStringLiteral("bt709"),
             QStringLiteral("-color_range"), QStringLiteral("tv")};
    return args;
}
