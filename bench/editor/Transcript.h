#pragma once

#include <QString>

// A transcript as a typist makes one: a time stamp and a speaker, then fifty
// words, line by line, the same for every run. With `andEvery`, every
// andEvery-th word is "and", so that a search for it finds a known share.
inline QString transcript(qsizetype size, int andEvery = 0)
{
    static const char *words[] = {"the", "witness", "said", "that", "on", "monday", "morning", "she",
                                  "went", "to", "office", "and", "found", "door", "already", "open",
                                  "counsel", "asked", "whether", "anyone", "else", "had", "keys"};
    QString out;
    out.reserve(size + 400);
    unsigned seed = 12345;
    int turn = 0;
    int n = 0;
    while (out.size() < size) {
        out += QStringLiteral("[%1:%2:%3] Speaker %4: ")
                   .arg(turn / 3600, 2, 10, QLatin1Char('0'))
                   .arg(turn / 60 % 60, 2, 10, QLatin1Char('0'))
                   .arg(turn % 60, 2, 10, QLatin1Char('0'))
                   .arg(turn % 2 + 1);
        for (int w = 0; w < 50; ++w, ++n) {
            seed = seed * 1103515245u + 12345u;
            out += andEvery > 0 && n % andEvery == andEvery - 1
                       ? QStringLiteral("and")
                       : QString::fromLatin1(words[(seed >> 16) % (sizeof words / sizeof *words)]);
            out += u' ';
        }
        out += QStringLiteral("\r\n");
        turn += 7;
    }
    return out;
}
