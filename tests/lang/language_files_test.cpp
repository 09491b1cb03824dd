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

TEST(LanguageFiles, EveryEntryInUseHasItsText)
{
    for (const LangFile &f : langFiles()) {
        for (int i = 0; i < FileLines; ++i) {
            if (!unreferenced(i))
                EXPECT_FALSE(togliAmp(f(i)).trimmed().isEmpty()) << at(f, i);
        }
        // The title of the program's own message boxes.
        EXPECT_EQ(f(1), QStringLiteral("Quillmere")) << at(f, 1);
        // Read as a boolean that enables the start-up check's command.
        EXPECT_EQ(f(133), QStringLiteral("True")) << at(f, 133);
        EXPECT_TRUE(f(128).contains(QStringLiteral("nnn"))) << at(f, 128) << ": the default has no place";
        EXPECT_TRUE(f(131).contains(QStringLiteral("<BR>"))) << at(f, 131) << ": no paragraph break";
    }
}

TEST(LanguageFiles, AmpersandsStandOnlyWhereTheyMakeAMnemonic)
{
    // Compared with captions that lost their "&" on the way.
    const QList<int> compared{32, 39, 93, 124, 125, 126};
    // The program puts its own "&" in front of these.
    const QList<int> prefixed{15, 111, 112};
    // Shown as they stand, where an "&" would be seen as such: tool tips,
    // window captions, labels, dialog titles and filter names, the update
    // question.
    const QList<int> plain{22,  23,  25,  26,  27,  41,  52,  55,  76,  77,  78,  79,  96,  97, 100,
                           104, 105, 106, 107, 110, 113, 114, 118, 120, 121, 122, 123, 131, 132};
    for (const LangFile &f : langFiles()) {
        for (const QList<int> *list : {&compared, &prefixed, &plain}) {
            for (int i : *list)
                EXPECT_FALSE(f(i).contains(u'&')) << at(f, i);
        }
        // The find button is "&" + entry 56: a leading "&" would double.
        EXPECT_FALSE(f(56).startsWith(u'&')) << at(f, 56);
        for (int i = 0; i < FileLines; ++i) {
            const QString &e = f(i);
            EXPECT_LE(e.count(u'&'), 1) << at(f, i) << ": more than one mnemonic";
            const qsizetype amp = e.indexOf(u'&');
            if (amp >= 0)
                EXPECT_TRUE(amp + 1 < e.size() && e.at(amp + 1).isLetterOrNumber())
                    << at(f, i) << ": \"&\" marks no letter";
        }
    }
}

TEST(LanguageFiles, EndingsFitWhatTheProgramAppendsOrCutsOff)
{
    for (const LangFile &f : langFiles()) {
        // Commands that open a dialog; the language dialog's title is entry
        // 15 less its last three characters.
        for (int i : {3, 14, 15, 16, 18, 19, 30, 81})
            EXPECT_TRUE(f(i).endsWith(QStringLiteral("..."))) << at(f, i);
        EXPECT_GT(f(15).size(), 3) << at(f, 15);
        // The program adds the dots itself.
        for (int i : {59, 104, 125, 126})
            EXPECT_FALSE(f(i).endsWith(u'.')) << at(f, i);
        // Sentence beginnings followed by " 60." and the like; the question
        // followed by " <document>?"; the label followed by ":".
        for (int i : {33, 40, 75})
            EXPECT_FALSE(f(i).endsWith(u'.') || f(i).endsWith(u'?')) << at(f, i);
        EXPECT_FALSE(f(118).endsWith(u':')) << at(f, 118);
    }
}

TEST(LanguageFiles, StateWordsAndButtonLettersAreDistinct)
{
    for (const LangFile &f : langFiles()) {
        // The player's state and the two show/hide commands are read back
        // from their captions.
        EXPECT_NE(f(7), f(8)) << at(f, 7) << " and 8";
        EXPECT_NE(f(84), f(85)) << at(f, 84) << " and 85";
        EXPECT_NE(f(86), f(116)) << at(f, 86) << " and 116";
        EXPECT_NE(f(113), f(114)) << at(f, 113) << " and 114";
        // Bold, italic, underline, strike-out: one letter each.
        QStringList letters;
        for (int i : {90, 115, 91, 92}) {
            EXPECT_TRUE(f(i).size() == 1 && f(i).at(0).isLetter()) << at(f, i);
            EXPECT_FALSE(letters.contains(f(i).toCaseFolded())) << at(f, i) << ": the same letter twice";
            letters.append(f(i).toCaseFolded());
        }
    }
}

TEST(LanguageFiles, TheNumberDialogTellsEachOfItsJobsApart)
{
    enum class Job { Bookmark, SecIndietro, GoTo, TempoPlay, TempoPause, SecSalto };
    for (const LangFile &f : langFiles()) {
        // The order in which the dialog's OK finds its job: the caption
        // against entries 93, 32 and 39 as they stand, then the prompt's
        // beginning against 125 and 126.
        const auto jobOf = [&f](const QString &caption, const QString &prompt) {
            if (caption == f(93))
                return Job::Bookmark;
            if (caption == f(32))
                return Job::SecIndietro;
            if (caption == f(39))
                return Job::GoTo;
            if (prompt.startsWith(f(125)))
                return Job::TempoPlay;
            if (prompt.startsWith(f(126)))
                return Job::TempoPause;
            return Job::SecSalto;
        };
        const auto hint = [&f](const char *value) {
            return QString(f(128)).replace(QStringLiteral("nnn"), QString::fromLatin1(value));
        };
        struct Opening { int caption; QString prompt; Job job; };
        const Opening openings[] = {
            {93, togliAmp(f(88)), Job::Bookmark},
            {32, togliAmp(f(31)), Job::SecIndietro},
            {39, togliAmp(f(38)), Job::GoTo},
            {124, togliAmp(f(125) + u' ' + hint("5")), Job::TempoPlay},
            {124, togliAmp(f(126) + u' ' + hint("3")), Job::TempoPause},
            {35, togliAmp(f(34)), Job::SecSalto},
        };
        for (const Opening &o : openings)
            EXPECT_EQ(int(jobOf(togliAmp(f(o.caption)), o.prompt)), int(o.job))
                << at(f, o.caption) << ": the dialog opened with this caption mistakes its job";
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
        QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        const QString asUtf8 = utf8.decode(legacy);
        (void)asUtf8;
        ASSERT_TRUE(utf8.hasError()) << "the copy would pass for UTF-8";

        const QString path = dir.filePath(name);
        QFile out(path);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        ASSERT_EQ(out.write(legacy), legacy.size());
        out.close();

        LanguageTable table;
        EXPECT_EQ(LanguageFile::load(path, table), LanguageFile::Result::Loaded);
        for (int i = 0; i < FileLines; ++i)
            EXPECT_EQ(table(i), (*original)(i)) << at(*original, i);
    }
}
