// The language files laid down with the program: their form, which the
// loader relies on, and the entries that the windows compare, cut, or build
// on. Every check names the file and the entry that breaks it.

#include "lang/LanguageFile.h"
#include "platform/TextFile.h"

#include <QDir>
#include <QStringDecoder>
#include <QStringEncoder>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

namespace {

constexpr int FileLines = 147; // entries 0 to 146

struct LangFile
{
    QString name;
    QByteArray bytes;
    LanguageTable table;
    const QString &operator()(int index) const { return table(index); }
    std::string at(int index) const { return name.toStdString() + ", entry " + std::to_string(index); }
};

// Every *.lng of the folder, each read once by the program's own loader.
const std::vector<LangFile> &langFiles()
{
    static const std::vector<LangFile> files = [] {
        std::vector<LangFile> list;
        const QDir dir(qEnvironmentVariable("QM_SOURCE_DIR") + QStringLiteral("/data/Files/Lang"));
        for (const QString &name : dir.entryList({QStringLiteral("*.lng")}, QDir::Files, QDir::Name)) {
            LangFile f{name, TextFile::readBytes(dir.filePath(name)).value_or(QByteArray()), {}};
            LanguageFile::loadBytes(f.bytes, f.table);
            list.push_back(std::move(f));
        }
        return list;
    }();
    return files;
}

const LangFile *named(const QString &name)
{
    for (const LangFile &f : langFiles())
        if (f.name == name)
            return &f;
    return nullptr;
}

QString togliAmp(QString s)
{
    return s.remove(u'&');
}

// The letter that Alt reaches: the one behind the first single "&".
QString mnemonicOf(const QString &caption)
{
    for (qsizetype i = 0; i + 1 < caption.size(); ++i) {
        if (caption.at(i) == u'&' && caption.at(i + 1) != u'&')
            return QString(caption.at(i + 1)).toCaseFolded();
        if (caption.at(i) == u'&')
            ++i;
    }
    return QString();
}

} // namespace

TEST(LanguageFiles, EachShippedOneIsUtf8InCrLfLinesNumberedByTheirIndex)
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
        for (qsizetype n = 0; n < raw.size(); ++n)
            EXPECT_TRUE(raw.at(n).endsWith('\r') && raw.at(n).count('\r') == 1)
                << "line " << n + 1 << " does not end in exactly one CR LF";

        const QStringList lines = text.split(QStringLiteral("\r\n"));
        for (int i = 0; i < FileLines && i < lines.size(); ++i) {
            const QString &line = lines.at(i);
            EXPECT_TRUE(line.startsWith(QStringLiteral("%1").arg(i, 3, 10, QLatin1Char('0'))))
                << f.at(i) << ": line begins " << line.left(3).toStdString();
            const QString entry = line.mid(3);
            EXPECT_EQ(entry, entry.trimmed()) << f.at(i) << ": blanks at an end";
            EXPECT_FALSE(std::any_of(entry.begin(), entry.end(), [](QChar c) { return c.category() == QChar::Other_Control; }))
                << f.at(i) << ": control character";
            EXPECT_EQ(f(i), entry) << f.at(i) << ": the loader reads another text";
        }
    }
}

// What the program appends, cuts off, compares or reads back from an entry.
TEST(LanguageFiles, EntriesFitHowTheProgramUsesThem)
{
    const auto endsWith = [](const char *end) { return [end](const QString &e) { return e.endsWith(QLatin1String(end)); }; };
    const auto notEndingIn = [](const char *ends) {
        return [ends](const QString &e) { return e.isEmpty() || !QLatin1String(ends).contains(e.back()); };
    };
    const QList<int> unused{24, 28, 29, 58, 69, 73, 83, 108, 109, 117, 119}; // nothing reads them
    QList<int> all, used;
    for (int i = 0; i < FileLines; ++i) {
        all.append(i);
        if (!unused.contains(i))
            used.append(i);
    }
    const struct { const char *rule; QList<int> entries; std::function<bool(const QString &)> holds; } rules[] = {
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
         [](const QString &e) { return !e.contains(u'&'); }},
        {"does not begin with \"&\" (the find button adds one)", {56}, [](const QString &e) { return !e.startsWith(u'&'); }},
        {"is one letter", {90, 115, 91, 92}, [](const QString &e) { return e.size() == 1 && e.at(0).isLetter(); }},
        {"marks at most one letter with \"&\"", all, [](const QString &e) {
             const qsizetype amp = e.indexOf(u'&');
             return amp < 0 || (e.count(u'&') == 1 && amp + 1 < e.size() && e.at(amp + 1).isLetterOrNumber());
         }},
    };
    // Entries read back from captions or told apart by the number dialog:
    // the play/pause and show/hide words, the style letters, the dialog's
    // captions.
    const QList<QList<int>> distinct{{7, 8}, {84, 85}, {86, 116}, {113, 114}, {90, 115, 91, 92}, {93, 32, 39, 124, 35}};
    for (const LangFile &f : langFiles()) {
        for (const auto &rule : rules)
            for (int i : rule.entries)
                EXPECT_TRUE(rule.holds(f(i))) << f.at(i) << " \"" << f(i).toStdString() << "\": " << rule.rule;
        for (const QList<int> &group : distinct)
            for (qsizetype a = 0; a < group.size(); ++a)
                for (qsizetype b = a + 1; b < group.size(); ++b)
                    EXPECT_NE(togliAmp(f(group[a])).toCaseFolded(), togliAmp(f(group[b])).toCaseFolded())
                        << f.at(group[a]) << " and " << group[b];
        // The number dialog then reads the prompt's beginning.
        for (int prompt : {88, 31, 38, 34})
            EXPECT_FALSE(togliAmp(f(prompt)).startsWith(f(125)) || togliAmp(f(prompt)).startsWith(f(126)))
                << f.at(prompt) << ": read as a smart play prompt";
        EXPECT_FALSE(f(125).startsWith(f(126)) || f(126).startsWith(f(125))) << f.at(125) << " and 126";
    }
}

TEST(LanguageFiles, MnemonicsDoNotClashWithinAMenuOrDialog)
{
    // One place on the screen: a list of slots, each a control whose
    // caption is one of the alternatives (a command that changes its words
    // with the state keeps its place). `amp` marks a caption that the
    // program writes as "&" + entry; -1 stands for the fixed "&?" menu.
    struct Caption { int index; bool amp = false; };
    const struct { const char *name; std::vector<std::vector<Caption>> slots; } places[] = {
        {"player's menu bar", {{{2}}, {{6}}, {{87}}, {{13}}, {{74}}, {{-1}}}},
        {"player's File menu", {{{3}}, {{4}}, {{5}}}},
        {"Playback menu", {{{7}, {8}}, {{9}}, {{11}}, {{10}}, {{129}}, {{130}}, {{12}}, {{94}}, {{95}}}},
        {"View menu", {{{86}, {116}}, {{84}, {85}}}},
        {"Options menu", {{{81}}, {{30}}, {{14}}, {{135}}, {{80}}, {{103}}, {{15, true}}, {{101}}}},
        {"help menu", {{{16}}, {{102}}, {{18}}, {{19}}}},
        {"editor's menu bar", {{{2}}, {{47}}, {{71}}, {{134}}}},
        {"editor's File menu", {{{42}}, {{43}}, {{44}}, {{45}}, {{46}}}},
        {"Edit menu", {{{70}}, {{82}}, {{48}}, {{49}}, {{50}}, {{51}}, {{56}}, {{59}}}},
        {"find dialog", {{{56, true}, {57}}, {{56}}, {{59}}, {{60}}, {{61}}, {{63}}, {{64}}}},
        {"recorder", {{{111, true}, {112, true}, {8}}, {{9}}}},
    };
    for (const LangFile &f : langFiles()) {
        for (const auto &p : places) {
            struct Key { QString letter; int index; size_t slot; };
            std::vector<Key> keys;
            for (size_t s = 0; s < p.slots.size(); ++s)
                for (const Caption &c : p.slots[s]) {
                    const QString caption = c.index < 0 ? QStringLiteral("&?") : c.amp ? u'&' + f(c.index) : f(c.index);
                    if (const QString letter = mnemonicOf(caption); !letter.isEmpty())
                        keys.push_back({letter, c.index, s});
                }
            for (size_t a = 0; a < keys.size(); ++a)
                for (size_t b = a + 1; b < keys.size(); ++b)
                    EXPECT_FALSE(keys[a].slot != keys[b].slot && keys[a].letter == keys[b].letter)
                        << f.name.toStdString() << ": entries " << keys[a].index << " and " << keys[b].index
                        << " share the key \"" << keys[a].letter.toStdString() << "\" in the " << p.name;
        }
    }
}

TEST(LanguageFiles, ASingleByteCopyReadsBackAsTheSameText)
{
    // Files from older systems are in the Cyrillic or the Western page; the
    // loader has to tell which from the bytes alone.
    for (const auto &[name, codec] : {std::pair{"Russian.lng", "windows-1251"}, std::pair{"Fran\u00e7ais.lng", "windows-1252"}}) {
        SCOPED_TRACE(name);
        const LangFile *original = named(QString::fromUtf8(name));
        ASSERT_TRUE(original);
        QStringEncoder encoder(codec);
        const QByteArray legacy = encoder.encode(QString::fromUtf8(original->bytes));
        ASSERT_FALSE(encoder.hasError()) << "a character that " << codec << " lacks";
        LanguageTable table;
        EXPECT_EQ(LanguageFile::loadBytes(legacy, table), LanguageFile::Result::Loaded);
        for (int i = 0; i < FileLines; ++i)
            EXPECT_EQ(table(i), (*original)(i)) << original->at(i);
    }
}
