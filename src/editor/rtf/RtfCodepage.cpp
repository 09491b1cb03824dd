#include "editor/rtf/RtfCodepage.h"

#include <QHash>
#include <mutex>

namespace Rtf::detail {

namespace {

// windows-1252 from 0x80 to 0x9F; the rest of the upper half is Latin-1.
// Kept here so that the common case needs no converter library.
constexpr char16_t Cp1252High[32] = {
    0x20AC, 0xFFFD, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0xFFFD, 0x017D, 0xFFFD,
    0xFFFD, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0xFFFD, 0x017E, 0x0178,
};

struct Named
{
    int codepage;
    const char *name;
    bool multiByte;
};

constexpr Named Codepages[] = {
    {437, "IBM437", false},       {737, "ibm-737", false},       {775, "IBM775", false},
    {850, "IBM850", false},       {852, "IBM852", false},        {855, "IBM855", false},
    {857, "IBM857", false},       {860, "IBM860", false},        {861, "IBM861", false},
    {862, "IBM862", false},       {863, "IBM863", false},        {864, "IBM864", false},
    {865, "IBM865", false},       {866, "IBM866", false},        {869, "IBM869", false},
    {874, "windows-874", false},  {932, "windows-31j", true},    {936, "GBK", true},
    {949, "windows-949", true},   {950, "Big5", true},           {1250, "windows-1250", false},
    {1251, "windows-1251", false}, {1252, "windows-1252", false}, {1253, "windows-1253", false},
    {1254, "windows-1254", false}, {1255, "windows-1255", false}, {1256, "windows-1256", false},
    {1257, "windows-1257", false}, {1258, "windows-1258", false}, {10000, "macintosh", false},
    {10006, "x-mac-greek", false}, {10007, "x-mac-cyrillic", false},
    {10029, "x-mac-centraleurroman", false}, {20866, "KOI8-R", false}, {21866, "KOI8-U", false},
    {28591, "ISO-8859-1", false}, {28592, "ISO-8859-2", false},  {28593, "ISO-8859-3", false},
    {28594, "ISO-8859-4", false}, {28595, "ISO-8859-5", false},  {28596, "ISO-8859-6", false},
    {28597, "ISO-8859-7", false}, {28598, "ISO-8859-8", false},  {28599, "ISO-8859-9", false},
    {28605, "ISO-8859-15", false}, {54936, "GB18030", true},     {65001, "UTF-8", true},
    // The Mac's East Asian code pages, by the nearest encodings the
    // converter knows: their byte sequences are the same for text.
    {10001, "Shift_JIS", true},   {10002, "Big5", true},         {10003, "EUC-KR", true},
    {10008, "GB2312", true},      {10021, "TIS-620", false},     {10081, "x-mac-turkish", false},
};

const Named *named(int codepage)
{
    for (const Named &n : Codepages) {
        if (n.codepage == codepage)
            return &n;
    }
    return nullptr;
}

bool decoderAvailable(const Named &n)
{
    // Availability depends only on the Qt build; asked once per code page.
    static std::mutex lock;
    static QHash<int, bool> known;
    const std::lock_guard<std::mutex> guard(lock);
    auto it = known.constFind(n.codepage);
    if (it != known.constEnd())
        return *it;
    const bool ok = n.codepage == 1252 || QStringDecoder(n.name).isValid();
    known.insert(n.codepage, ok);
    return ok;
}

} // namespace

int codepageForCharset(int charset)
{
    switch (charset) {
    case 0: return 1252; // ANSI: Western, whatever the document's code page
    case 77: return 10000;
    case 78: return 10001;
    case 79: return 10003;
    case 80: return 10008;
    case 81: return 10002;
    case 83: return 10005;
    case 84: return 10004;
    case 85: return 10006;
    case 86: return 10081;
    case 87: return 10021;
    case 88: return 10029;
    case 89: return 10007;
    case 130: return 1361;
    case 128: return 932;
    case 129: return 949;
    case 134: return 936;
    case 136: return 950;
    case 161: return 1253;
    case 162: return 1254;
    case 163: return 1258;
    case 177: return 1255;
    case 178: return 1256;
    case 186: return 1257;
    case 204: return 1251;
    case 222: return 874;
    case 238: return 1250;
    case 254: return 437;
    case 255: return 850;
    default: return 0; // default, symbol and the unknown: the document's
    }
}

bool CodepageDecoder::isSupported(int codepage)
{
    const Named *n = named(codepage);
    return n && decoderAvailable(*n);
}

const CodepageDecoder::SingleByte *CodepageDecoder::singleByte(int codepage)
{
    if (m_lastTable && m_lastTable->codepage == codepage)
        return m_lastTable;
    for (const auto &t : m_tables) {
        if (t->codepage == codepage)
            return m_lastTable = t.get();
    }
    auto t = std::make_unique<SingleByte>();
    t->codepage = codepage;
    for (int b = 0; b < 128; ++b)
        t->table[b] = char16_t(b);
    for (int b = 0; b < 128; ++b)
        t->table[128 + b] = b < 32 ? Cp1252High[b] : char16_t(128 + b);
    const Named *n = named(codepage);
    if (codepage != 1252 && n && decoderAvailable(*n)) {
        QStringDecoder dec(n->name, QStringDecoder::Flag::Stateless);
        for (int b = 128; b < 256; ++b) {
            const char byte = char(b);
            const QString s = dec.decode(QByteArrayView(&byte, 1));
            const bool usable = s.size() == 1 && s.at(0) != QChar(0x1A);
            t->table[b] = usable ? s.at(0).unicode() : char16_t(0xFFFD);
        }
    }
    m_tables.push_back(std::move(t));
    return m_lastTable = m_tables.back().get();
}

void CodepageDecoder::select(int codepage)
{
    m_current = codepage;
    const Named *n = named(codepage);
    const bool usable = n && decoderAvailable(*n);
    if (!usable || !n->multiByte) {
        m_table = singleByte(usable ? codepage : DefaultCodepage);
        return;
    }
    m_table = nullptr;
    if (m_multiCodepage != codepage) {
        m_multi = QStringDecoder(n->name);
        m_multiCodepage = codepage;
    }
}

void CodepageDecoder::feed(int codepage, unsigned char byte, QString &out)
{
    if (codepage != m_current) {
        if (m_waiting)
            flush(out);
        select(codepage);
    }
    if (m_table) {
        out.append(QChar(m_table->table[byte]));
        return;
    }
    if (!m_waiting && byte < 0x80) {
        out.append(QChar(char16_t(byte)));
        return;
    }
    const char c = char(byte);
    const QString s = m_multi.decode(QByteArrayView(&c, 1));
    m_waiting = s.isEmpty();
    for (QChar ch : s)
        out.append(ch == QChar(0x1A) ? QChar(QChar::ReplacementCharacter) : ch);
}

void CodepageDecoder::flush(QString &out)
{
    if (!m_waiting)
        return;
    m_waiting = false;
    out.append(QChar(QChar::ReplacementCharacter));
    m_multi.resetState();
}

unsigned char cp1252Byte(char16_t c)
{
    if (c < 0x80 || (c >= 0xA0 && c <= 0xFF))
        return (c >= 0x20 && c != 0x7F) || c >= 0xA0 ? (unsigned char)c : 0;
    for (int i = 0; i < 32; ++i) {
        if (Cp1252High[i] == c && c != 0xFFFD)
            return (unsigned char)(0x80 + i);
    }
    return 0;
}

} // namespace Rtf::detail
