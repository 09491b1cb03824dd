// The language files laid down with the program: their form, which the
// loader relies on, and the entries that the windows compare, cut, or build
// on. Every check names the file and the entry that breaks it.

#include "lang/LanguageFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>
#include <QStringEncoder>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "QtPrinters.h"

namespace {

constexpr int FileLines = 147; // entries 0 to 146

// The languages the program offers out of the box, among them every file
// that the start-up's choice by country can name.
const QStringList &shippedNames()
{
    static const QStringList names{
        QStringLiteral("English.lng"),   QStringLiteral("Italiano.lng"), QStringLiteral("Brazilian.lng"),
        QStringLiteral("Hungarian.lng"), QStringLiteral("Nederlands.lng"), QStringLiteral("Russian.lng"),
        QStringLiteral("Spanish.lng"),   QStringLiteral("Fran\u00e7ais.lng"), QStringLiteral("Svenska.lng"),
    };
    return names;
}

// Entries that nothing reads.
bool unreferenced(int index)
{
    static const QList<int> unused{24, 28, 29, 58, 69, 73, 83, 108, 109, 117, 119};
    return unused.contains(index);
}

QString langFolder()
{
    return qEnvironmentVariable("QM_SOURCE_DIR") + QStringLiteral("/data/Files/Lang");
}

struct LangFile
{
    QString name;
    QByteArray bytes;
    LanguageTable table;
    LanguageFile::Result result = LanguageFile::Result::Missing;

    const QString &operator()(int index) const { return table(index); }
};

// Every *.lng of the folder, each read once by the program's own loader.
const std::vector<LangFile> &langFiles()
{
    static const std::vector<LangFile> files = [] {
        std::vector<LangFile> list;
        const QDir dir(langFolder());
        const QStringList names = dir.entryList({QStringLiteral("*.lng")}, QDir::Files, QDir::Name);
        for (const QString &name : names) {
            LangFile f;
            f.name = name;
            QFile file(dir.filePath(name));
            if (file.open(QIODevice::ReadOnly))
                f.bytes = file.readAll();
            f.result = LanguageFile::load(dir.filePath(name), f.table);
            list.push_back(std::move(f));
        }
        return list;
    }();
    return files;
}

std::string at(const LangFile &f, int index)
{
    return f.name.toStdString() + ", entry " + std::to_string(index);
}

QString togliAmp(QString s)
{
    return s.remove(u'&');
}

// The letter that Alt reaches: the one behind the first single "&".
QString mnemonicOf(const QString &caption)
{
    for (qsizetype i = 0; i + 1 < caption.size(); ++i) {
        if (caption.at(i) != u'&')
            continue;
        if (caption.at(i + 1) == u'&') {
            ++i;
            continue;
        }
        return QString(caption.at(i + 1)).toCaseFolded();
    }
    return QString();
}

} // namespace

TEST(LanguageFiles, EveryShippedLanguageIsInTheFolder)
{
    ASSERT_FALSE(qEnvironmentVariableIsEmpty("QM_SOURCE_DIR"));
    for (const QString &name : shippedNames())
        EXPECT_TRUE(QFileInfo::exists(langFolder() + u'/' + name)) << name.toStdString();
    EXPECT_GE(langFiles().size(), size_t(shippedNames().size()));
}

TEST(LanguageFiles, EachIsUtf8InCrLfLinesNumberedByTheirIndex)
{
    for (const LangFile &f : langFiles()) {
        SCOPED_TRACE(f.name.toStdString());
        EXPECT_FALSE(f.bytes.startsWith("\xEF\xBB\xBF")) << "byte order mark";
        QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        const QString text = utf8.decode(f.bytes);
        EXPECT_FALSE(utf8.hasError()) << "not valid UTF-8";

        ASSERT_TRUE(f.bytes.endsWith("\r\n")) << "the last line has no CR LF";
        QList<QByteArray> raw = f.bytes.split('\n');
        raw.removeLast(); // behind the last line end
        EXPECT_EQ(raw.size(), FileLines);
        for (qsizetype n = 0; n < raw.size(); ++n) {
            EXPECT_TRUE(raw.at(n).endsWith('\r') && raw.at(n).count('\r') == 1)
                << "line " << n + 1 << " does not end in exactly one CR LF";
        }

        const QStringList lines = text.split(QStringLiteral("\r\n"));
        for (int i = 0; i < FileLines && i < lines.size(); ++i) {
            const QString &line = lines.at(i);
            const QString number = QStringLiteral("%1").arg(i, 3, 10, QLatin1Char('0'));
            EXPECT_TRUE(line.size() >= 3 && line.startsWith(number)) << at(f, i) << ": line begins "
                                                                     << line.left(3).toStdString();
            const QString entry = line.mid(3);
            EXPECT_EQ(entry, entry.trimmed()) << at(f, i) << ": blanks at an end";
            for (const QChar c : entry)
                EXPECT_FALSE(c.category() == QChar::Other_Control) << at(f, i) << ": control character";
        }

        EXPECT_EQ(f.result, LanguageFile::Result::Loaded);
        for (int i = 0; i < FileLines && i < lines.size(); ++i)
            EXPECT_EQ(f(i), lines.at(i).mid(3)) << at(f, i) << ": the loader reads another text";
        for (int i = FileLines; i < LanguageTable::Size; ++i)
            EXPECT_TRUE(f(i).isEmpty()) << at(f, i) << ": beyond the last line";
    }
}

// What the program appends, cuts off, compares or reads back from an entry.
TEST(LanguageFiles, EntriesFitHowTheProgramUsesThem)
{
    using Check = std::function<bool(const QString &)>;
    const auto endsWith = [](const char *end) { return [end](const QString &e) { return e.endsWith(QLatin1String(end)); }; };
    const auto notEndingIn = [](const char *ends) {
        return [ends](const QString &e) { return e.isEmpty() || !QLatin1String(ends).contains(e.back()); };
    };
    const auto noAmp = [](const QString &e) { return !e.contains(u'&'); };
    QList<int> all, used;
    for (int i = 0; i < FileLines; ++i) {
        all.append(i);
        if (!unreferenced(i))
            used.append(i);
    }
    const struct
    {
        const char *rule;
        QList<int> entries;
        Check holds;
    } rules[] = {
        {"has its text", used, [](const QString &e) { return !togliAmp(e).trimmed().isEmpty(); }},
        {"is the message boxes' title", {1}, [](const QString &e) { return e == QLatin1String("Quillmere"); }},
        {"enables the start-up check", {133}, [](const QString &e) { return e == QLatin1String("True"); }},
        {"has the place of the default", {128}, [](const QString &e) { return e.contains(QLatin1String("nnn")); }},
        {"has a paragraph break", {131}, [](const QString &e) { return e.contains(QLatin1String("<BR>")); }},
        // Commands that open a dialog; the language dialog's title is entry
        // 15 less its last three characters.
        {"ends in \"...\"", {3, 14, 15, 16, 18, 19, 30, 81}, endsWith("...")},
        {"is more than the dots", {15}, [](const QString &e) { return e.size() > 3; }},
        // The program adds the dots, the " 60." or " <document>?", the ":".
        {"leaves the dot to the program", {59, 104, 125, 126}, notEndingIn(".")},
        {"leaves the ending to the program", {33, 40, 75}, notEndingIn(".?")},
        {"leaves the colon to the program", {118}, notEndingIn(":")},
        // Compared with captions that lost their "&"; given an "&" by the
        // program; or shown where an "&" would be seen as such.
        {"has no \"&\"", {32, 39, 93, 124, 125, 126, 15, 111, 112, 22, 23, 25, 26, 27, 41, 52, 55, 76, 77, 78, 79,
                          96, 97, 100, 104, 105, 106, 107, 110, 113, 114, 118, 120, 121, 122, 123, 131, 132},
         noAmp},
        {"does not begin with \"&\" (the find button adds one)", {56}, [](const QString &e) { return !e.startsWith(u'&'); }},
        {"is one letter", {90, 115, 91, 92}, [](const QString &e) { return e.size() == 1 && e.at(0).isLetter(); }},
        {"marks at most one letter with \"&\"", all, [](const QString &e) {
             const qsizetype amp = e.indexOf(u'&');
             return e.count(u'&') == 0 || (e.count(u'&') == 1 && amp + 1 < e.size() && e.at(amp + 1).isLetterOrNumber());
         }},
    };
    // Entries read back from captions or told apart by the number dialog:
    // the play/pause and show/hide words, the style letters, the dialog's
    // captions.
    const QList<QList<int>> distinct{{7, 8}, {84, 85}, {86, 116}, {113, 114}, {90, 115, 91, 92}, {93, 32, 39, 124, 35}};
    for (const LangFile &f : langFiles()) {
        for (const auto &rule : rules) {
            for (int i : rule.entries)
                EXPECT_TRUE(rule.holds(f(i))) << at(f, i) << " \"" << f(i).toStdString() << "\": " << rule.rule;
        }
        for (const QList<int> &group : distinct) {
            for (qsizetype a = 0; a < group.size(); ++a) {
                for (qsizetype b = a + 1; b < group.size(); ++b)
                    EXPECT_NE(togliAmp(f(group[a])).toCaseFolded(), togliAmp(f(group[b])).toCaseFolded())
                        << at(f, group[a]) << " and " << group[b];
            }
        }
        // The number dialog then reads the prompt's beginning.
        for (int prompt : {88, 31, 38, 34}) {
            EXPECT_FALSE(togliAmp(f(prompt)).startsWith(f(125)) || togliAmp(f(prompt)).startsWith(f(126)))
                << at(f, prompt) << ": read as a smart play prompt";
        }
        EXPECT_FALSE(f(125).startsWith(f(126)) || f(126).startsWith(f(125))) << at(f, 125) << " and 126";
    }
}

TEST(LanguageFiles, MnemonicsDoNotClashWithinAMenuOrDialog)
{
    // One place on the screen: a list of slots, each a control whose
    // caption is one of the alternatives (a command that changes its words
    // with the state keeps its place). `amp` marks a caption that the
    // program writes as "&" + entry.
    struct Caption { int index; bool amp = false; };
    using Slot = std::vector<Caption>;
    struct Place { const char *name; std::vector<Slot> slots; QString fixed; };
    const Place places[] = {
        {"player's menu bar", {{{2}}, {{6}}, {{87}}, {{13}}, {{74}}}, QStringLiteral("&?")},
        {"player's File menu", {{{3}}, {{4}}, {{5}}}, {}},
        {"Playback menu", {{{7}, {8}}, {{9}}, {{11}}, {{10}}, {{129}}, {{130}}, {{12}}, {{94}}, {{95}}}, {}},
        {"View menu", {{{86}, {116}}, {{84}, {85}}}, {}},
        {"Options menu", {{{81}}, {{30}}, {{14}}, {{135}}, {{80}}, {{103}}, {{15, true}}, {{101}}}, {}},
        {"help menu", {{{16}}, {{102}}, {{18}}, {{19}}}, {}},
        {"editor's menu bar", {{{2}}, {{47}}, {{71}}, {{134}}}, {}},
        {"editor's File menu", {{{42}}, {{43}}, {{44}}, {{45}}, {{46}}}, {}},
        {"Edit menu", {{{70}}, {{82}}, {{48}}, {{49}}, {{50}}, {{51}}, {{56}}, {{59}}}, {}},
        {"find dialog", {{{56, true}, {57}}, {{56}}, {{59}}, {{60}}, {{61}}, {{63}}, {{64}}}, {}},
        {"recorder", {{{111, true}, {112, true}, {8}}, {{9}}}, {}},
    };
    for (const LangFile &f : langFiles()) {
        for (const Place &p : places) {
            struct Key { QString letter; int index; size_t slot; };
            std::vector<Key> keys;
            for (size_t s = 0; s < p.slots.size(); ++s) {
                for (const Caption &c : p.slots[s]) {
                    const QString caption = c.amp ? QStringLiteral("&") + f(c.index) : f(c.index);
                    const QString letter = mnemonicOf(caption);
                    if (!letter.isEmpty())
                        keys.push_back({letter, c.index, s});
                }
            }
            if (!p.fixed.isEmpty())
                keys.push_back({mnemonicOf(p.fixed), -1, p.slots.size()});
            for (size_t a = 0; a < keys.size(); ++a) {
                for (size_t b = a + 1; b < keys.size(); ++b) {
                    const auto name = [&p](int index) {
                        return index < 0 ? p.fixed.toStdString() : "entry " + std::to_string(index);
                    };
                    EXPECT_FALSE(keys[a].slot != keys[b].slot && keys[a].letter == keys[b].letter)
                        << f.name.toStdString() << ": " << name(keys[a].index) << " and " << name(keys[b].index)
                        << " share the key \"" << keys[a].letter.toStdString() << "\" in the " << p.name;
                }
            }
        }
    }
}

TEST(LanguageFiles, ASingleByteCopyReadsBackAsTheSameText)
{
    // Files from older systems are in the Cyrillic or the Western page; the
    // loader has to tell which from the bytes alone.
    const std::pair<QString, const char *> cases[] = {
        {QStringLiteral("Russian.lng"), "windows-1251"},
        {QStringLiteral("Fran\u00e7ais.lng"), "windows-1252"},
    };
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    for (const auto &[name, codec] : cases) {
        SCOPED_TRACE(name.toStdString());
        const auto original = std::find_if(langFiles().begin(), langFiles().end(),
                                           [&name](const LangFile &f) { return f.name == name; });
        ASSERT_NE(original, langFiles().end());

        QStringEncoder encoder(codec);
        ASSERT_TRUE(encoder.isValid()) << codec;
        const QByteArray legacy = encoder.encode(QString::fromUtf8(original->bytes));
        ASSERT_FALSE(encoder.hasError()) << "a character that " << codec << " lacks";
        const QString path = dir.filePath(name);
        QFile out(path);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly) && out.write(legacy) == legacy.size());
        out.close();

        LanguageTable table;
        EXPECT_EQ(LanguageFile::load(path, table), LanguageFile::Result::Loaded);
        for (int i = 0; i < FileLines; ++i)
            EXPECT_EQ(table(i), (*original)(i)) << at(*original, i);
    }
}
