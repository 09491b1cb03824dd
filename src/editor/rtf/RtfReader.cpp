#include "editor/rtf/RtfReader.h"

#include "editor/rtf/RtfReaderState.h"

#include "editor/rtf/Rtf.h"

#include <QCryptographicHash>
#include <QImage>
#include <QPainter>

namespace Rtf::detail {

namespace reader {

void Reader::run()
{
    while (m_pos < m_size && !m_done) {
        const unsigned char c = m_data[m_pos];
        switch (c) {
        case '{': ++m_pos; openGroup(); break;
        case '}': ++m_pos; closeGroup(); break;
        case '\\': ++m_pos; controlSequence(); break;
        case '\r': case '\n': ++m_pos; break;
        default:
            if (c >= 0x20 && c < 0x7F && !m_overflow && top().dest == Dest::Text && !m_ucSkip
                && !m_star
                && !top().chr.hidden && !m_decoder.waitingForTrail() && !m_highSurrogate
                && !m_pendingTabs) {
                plainTextSpan();
            } else {
                ++m_pos;
                if (m_overflow == 0)
                    textByte(c, true);
            }
        }
    }
    finish();
}

// Plain ASCII text goes to the run in one piece: the common case by far.
void Reader::plainTextSpan()
{
    const qsizetype start = m_pos;
    while (m_pos < m_size) {
        const unsigned char c = m_data[m_pos];
        if (c < 0x20 || c >= 0x7F || c == '\\' || c == '{' || c == '}')
            break;
        ++m_pos;
    }
    appendRun(m_data[start]); // settles the run's format
    m_run.append(QLatin1String(reinterpret_cast<const char *>(m_data) + start + 1,
                               m_pos - start - 1));
}

void Reader::openGroup()
{
    flushBytes();
    m_ucSkip = 0;
    m_star = false;
    if (m_overflow > 0 || int(m_stack.size()) >= MaxDepth) {
        ++m_overflow;
        return;
    }
    GroupState s = m_stack.back();
    if (m_stack.size() == 1)
        s.dest = Dest::Text;
    m_stack.push_back(s);
    m_stateMaybeChanged = true;
}

void Reader::closeGroup()
{
    flushBytes();
    m_ucSkip = 0;
    m_star = false;
    if (m_overflow > 0) {
        --m_overflow;
        return;
    }
    if (m_stack.size() <= 1)
        return;
    const GroupState closing = m_stack.back();
    m_stack.pop_back();
    m_stateMaybeChanged = true;
    endDestination(closing);
    if (m_stack.size() == 1) {
        m_final = closing;
        m_haveFinal = true;
        m_done = true;
    }
}

void Reader::controlSequence()
{
    m_wordStart = m_pos - 1;
    if (m_pos >= m_size)
        return;
    const unsigned char c = m_data[m_pos];
    const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    if (!letter) {
        ++m_pos;
        if (c == '\'') {
            int value = 0, digits = 0;
            while (digits < 2 && m_pos < m_size) {
                const int d = hexValue(m_data[m_pos]);
                if (d < 0)
                    break;
                value = value * 16 + d;
                ++digits;
                ++m_pos;
            }
            m_star = false;
            if (digits > 0 && m_overflow == 0)
                textByte((unsigned char)value, false);
            return;
        }
        if (m_overflow > 0)
            return;
        if (c == '*') {
            m_star = true;
            return;
        }
        flushBytes();
        m_star = false;
        if (m_ucSkip > 0) {
            --m_ucSkip;
            return;
        }
        switch (c) {
        case '\\': case '{': case '}': textChar(c); break;
        case '~': textChar(0x00A0); break;
        case '-': textChar(0x00AD); break;
        case '_': textChar(0x2011); break;
        case '\t': textChar(u'\t'); break;
        case '\r': case '\n': controlWord("par", false, 0); break;
        default: break;
        }
        return;
    }

    char word[MaxWordLength + 1];
    int length = 0;
    bool overlong = false;
    while (m_pos < m_size) {
        const unsigned char w = m_data[m_pos];
        if (!((w >= 'a' && w <= 'z') || (w >= 'A' && w <= 'Z')))
            break;
        if (length < MaxWordLength)
            word[length++] = char(w);
        else
            overlong = true;
        ++m_pos;
    }
    bool hasParam = false;
    bool negative = false;
    long long value = 0;
    if (m_pos + 1 < m_size && m_data[m_pos] == '-' && m_data[m_pos + 1] >= '0'
        && m_data[m_pos + 1] <= '9') {
        negative = true;
        ++m_pos;
    }
    while (m_pos < m_size && m_data[m_pos] >= '0' && m_data[m_pos] <= '9') {
        hasParam = true;
        if (value <= ParamLimit)
            value = value * 10 + (m_data[m_pos] - '0');
        ++m_pos;
    }
    if (m_pos < m_size && m_data[m_pos] == ' ')
        ++m_pos;
    const int param = clampInt(negative ? -value : value, -ParamLimit, ParamLimit);
    const std::string_view name = overlong ? std::string_view() : std::string_view(word, length);

    if (name == "bin") {
        // The binary data is skipped even inside the fallback of \uN.
        if (m_ucSkip > 0)
            --m_ucSkip;
        binary(hasParam ? param : 0);
        return;
    }
    if (m_overflow > 0)
        return;
    flushBytes();
    if (m_ucSkip > 0) {
        --m_ucSkip;
        m_star = false;
        return;
    }
    controlWord(name, hasParam, param);
}

void Reader::binary(int length)
{
    if (length <= 0)
        return;
    const qsizetype n = std::min<qsizetype>(length, m_size - m_pos);
    if (m_overflow == 0 && top().dest == Dest::Picture) {
        m_picture.nibble = -1;
        m_picture.data.append(reinterpret_cast<const char *>(m_data) + m_pos, n);
    }
    m_pos += n;
}

// The hex digits of a picture's data; anything else between them is layout.
void Reader::pictureByte(unsigned char byte)
{
    const int d = hexValue(byte);
    if (d < 0)
        return;
    if (m_picture.nibble < 0) {
        m_picture.nibble = d;
        return;
    }
    m_picture.data.append(char(m_picture.nibble * 16 + d));
    m_picture.nibble = -1;
}

// A picture goes into the text as the image it shows, PNG and JPEG as
// themselves and other kinds as a placeholder of their size. The picture is
// kept as it stood in the file, from \pict to the end of its group, so that
// a save writes it back unchanged; what stood before \pict in that group
// was read as text and formats already.
void Reader::endPicture()
{
    const PictureState &p = m_picture;
    const QByteArray source = '{' + QByteArray(reinterpret_cast<const char *>(m_data) + p.source, m_pos - p.source);
    QImage image;
    if (p.kind != PictureState::Kind::Other)
        image = QImage::fromData(p.data, p.kind == PictureState::Kind::Png ? "PNG" : "JPEG");
    double width = 0, height = 0;
    if (p.goalWidth > 0 && p.goalHeight > 0) {
        width = p.goalWidth / TwipsPerPixel;
        height = p.goalHeight / TwipsPerPixel;
    } else if (!image.isNull()) {
        width = image.width();
        height = image.height();
    } else if (p.width > 0 && p.height > 0) {
        width = p.width;
        height = p.height;
    }
    width = std::clamp(width * p.scaleX / 100.0, 1.0, 4000.0);
    height = std::clamp(height * p.scaleY / 100.0, 1.0, 4000.0);
    if (width <= 1 && height <= 1)
        width = height = 32;
    if (image.isNull()) {
        // Drawn small and scaled up by the view: a placeholder costs little.
        image = QImage(std::min(int(width), 256), std::min(int(height), 256), QImage::Format_RGB32);
        image.fill(QColor(0xe4, 0xe7, 0xeb));
        QPainter painter(&image);
        painter.setPen(QColor(0x8a, 0x94, 0xa0));
        painter.drawRect(image.rect().adjusted(0, 0, -1, -1));
    }
    QTextImageFormat format;
    format.merge(charFormat(effectiveState(top().chr, false)));
    format.setName(QStringLiteral("qm-picture:")
                   + QString::fromLatin1(QCryptographicHash::hash(source, QCryptographicHash::Md5).toHex()));
    format.setWidth(width);
    format.setHeight(height);
    format.setProperty(PictureSourceProperty, source);
    flushRun();
    while (m_pendingTabs > 0) {
        --m_pendingTabs;
        appendRun(u'\t');
    }
    flushRun();
    m_paraHasContent = true;
    m_builder.addImage(format, image);
}

// A byte of text, raw or written as \'hh, in the code page in force.
void Reader::textByte(unsigned char byte, bool literal)
{
    if (m_ucSkip > 0) {
        --m_ucSkip;
        return;
    }
    m_star = false;
    const Dest dest = top().dest;
    if (dest == Dest::Picture) {
        if (literal)
            pictureByte(byte);
        return;
    }
    if (dest != Dest::Text && dest != Dest::FontTable && dest != Dest::ColorTable
        && dest != Dest::LevelText)
        return;
    if (literal && byte == ';' && dest != Dest::Text) {
        if (dest == Dest::FontTable) {
            commitFont();
        } else if (dest == Dest::ColorTable) {
            // An entry with no colour of its own is "auto".
            if (int(m_colors.size()) < MaxColors)
                m_colors.push_back(m_red < 0 && m_green < 0 && m_blue < 0
                                       ? QRgb(0)
                                       : qRgba(std::max(m_red, 0), std::max(m_green, 0),
                                               std::max(m_blue, 0), 255));
            m_red = m_green = m_blue = -1;
        }
        return;
    }
    if (dest == Dest::ColorTable)
        return;
    if (byte < 0x80 && !m_decoder.waitingForTrail()) {
        if (byte >= 0x20 || byte == '\t' || !literal)
            textChar(byte);
        return;
    }
    m_decoder.feed(codepage(), byte, m_decoded);
    for (QChar c : std::as_const(m_decoded))
        textChar(c.unicode());
    m_decoded.clear();
}

// A lead byte of a multi-byte code page with no trail byte is dropped as a
// replacement character once anything other than a byte follows it.
void Reader::flushBytes()
{
    if (!m_decoder.waitingForTrail())
        return;
    m_decoder.flush(m_decoded);
    const QString pending = m_decoded;
    m_decoded.clear();
    for (QChar c : pending)
        textChar(c.unicode());
}

// A character of the destination in force: text of the body, a font name
// or the text of a list level.
void Reader::textChar(char16_t c)
{
    GroupState &s = top();
    switch (s.dest) {
    case Dest::Text:
        break;
    case Dest::FontTable:
        if (m_pendingFontName.size() < MaxNameLength && !isNoText(c))
            m_pendingFontName.append(QChar(c));
        return;
    case Dest::LevelText:
        if (m_levelText.size() < MaxNameLength)
            m_levelText.append(QChar(c));
        return;
    default:
        return;
    }
    if (s.chr.hidden)
        return;
    if (QChar::isHighSurrogate(c)) {
        if (m_highSurrogate)
            appendRun(QChar::ReplacementCharacter);
        m_highSurrogate = c;
        return;
    }
    if (QChar::isLowSurrogate(c)) {
        if (m_highSurrogate) {
            appendRun(m_highSurrogate);
            m_highSurrogate = 0;
            appendRun(c);
        } else {
            appendRun(QChar::ReplacementCharacter);
        }
        return;
    }
    if (m_highSurrogate) {
        m_highSurrogate = 0;
        appendRun(QChar::ReplacementCharacter);
    }
    // Characters that the document would take for block or frame
    // boundaries, or that are no text at all, are dropped.
    if ((c < 0x20 && c != u'\t') || c == 0x7F || c == 0x2029 || c == 0xFDD0 || c == 0xFDD1
        || c == 0xFFFC || c == 0xFEFF || c == 0xFFFE || c == 0xFFFF)
        return;
    appendRun(c);
}

void Reader::appendRun(char16_t c)
{
    // Spaces go with the text around them.
    const bool space = c == u' ' || c == u'\t' || c == 0x00A0 || c == 0x3000;
    const bool eastAsian = space ? m_runEastAsian : c >= 0x1100 && isEastAsian(c);
    if (eastAsian != m_runEastAsian) {
        m_runEastAsian = eastAsian;
        m_stateMaybeChanged = true;
    }
    if (m_stateMaybeChanged) {
        const CharState s = effectiveState(top().chr, eastAsian);
        if (!m_run.isEmpty() && !(s == m_runState))
            flushRun();
        if (m_run.isEmpty())
            m_runState = s;
        m_stateMaybeChanged = false;
    }
    while (m_pendingTabs > 0) {
        --m_pendingTabs;
        m_run.append(QLatin1Char('\t'));
    }
    m_run.append(QChar(c));
}

void Reader::flushRun()
{
    if (m_run.isEmpty())
        return;
    m_paraHasContent = true;
    m_builder.addText(m_run, charFormat(m_runState));
    m_run.clear();
    m_stateMaybeChanged = true;
}

void Reader::endParagraph()
{
    if (top().dest != Dest::Text)
        return;
    if (m_highSurrogate) {
        m_highSurrogate = 0;
        appendRun(QChar::ReplacementCharacter);
    }
    flushRun();
    const ParaState &p = top().para;
    m_builder.endParagraph(blockFormat(p), listRequest(p),
                           charFormat(effectiveState(top().chr, false)));
    m_paraHasContent = false;
    m_pendingTabs = 0;
}

void Reader::finish()
{
    flushBytes();
    if (m_highSurrogate) {
        m_highSurrogate = 0;
        if (top().dest == Dest::Text)
            appendRun(QChar::ReplacementCharacter);
    }
    flushRun();
    // The last paragraph takes the state in force where the text ended: that
    // of the outermost group as it closed, or of the innermost open text
    // group when the data stops short.
    GroupState last;
    if (m_haveFinal) {
        last = m_final;
    } else {
        for (auto it = m_stack.rbegin(); it != m_stack.rend(); ++it) {
            if (it->dest == Dest::Text) {
                last = *it;
                break;
            }
        }
    }
    m_builder.finish(blockFormat(last.para), listRequest(last.para),
                     charFormat(effectiveState(last.chr, false)));
}

} // namespace reader

void read(const QByteArray &data, DocumentBuilder &builder)
{
    reader::Reader reader(data, builder);
    reader.run();
}

} // namespace Rtf::detail
