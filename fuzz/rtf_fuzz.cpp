// Feeds arbitrary bytes to the RTF reader and checks what must hold for any
// input: the reader finishes, what it read writes out and reads back to the
// same text and pictures, a second write gives the same bytes (pictures are
// written back as they stood), and an insertion leaves the text around the
// selection alone.
#include "editor/rtf/Rtf.h"

#include <QGuiApplication>
#include <QTextCursor>
#include <QTextDocument>
#include <cstdint>
#include <cstdlib>

namespace {

void check(bool condition)
{
    if (!condition)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int argc = 1;
    static char name[] = "rtf_fuzz";
    static char *argv[] = {name, nullptr};
    new QGuiApplication(argc, argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    QByteArray input(reinterpret_cast<const char *>(data), qsizetype(size));
    if (!Rtf::looksLikeRtf(input))
        input.prepend("{\\rtf1 ");

    QTextDocument doc;
    Rtf::load(doc, input);
    const QByteArray written = Rtf::fromDocument(doc);
    check(Rtf::looksLikeRtf(written));

    QTextDocument again;
    Rtf::load(again, written);
    // Text and pictures alike: a picture is one object mark in the text.
    check(again.toPlainText() == doc.toPlainText());
    check(Rtf::fromDocument(again) == written);

    QTextDocument target;
    QTextCursor cursor(&target);
    cursor.insertText(QStringLiteral("head\ntail"));
    cursor.setPosition(2);
    cursor.setPosition(7, QTextCursor::KeepAnchor);
    Rtf::insert(cursor, input);
    const QString text = target.toPlainText();
    check(text.startsWith(QLatin1String("he")) && text.endsWith(QLatin1String("il")));
    check(cursor.position() == target.characterCount() - 3);
    return 0;
}
