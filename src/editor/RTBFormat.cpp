// The rich-text control: character and paragraph formats, files, search.

#include "editor/RTB.h"

#include "editor/rtf/Rtf.h"
#include "platform/TextFile.h"

#include <QAbstractTextDocumentLayout>
#include <QFile>
#include <QPainter>
#include <QPrinter>
#include <QSaveFile>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QTextList>
#include <memory>

namespace {

// Calls `visit` with the format of every piece of text in the selection.
template <typename Visit>
void forEachCharFormat(const QTextDocument *doc, int start, int end, Visit visit)
{
    for (QTextBlock block = doc->findBlock(start); block.isValid() && block.position() < end; block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QTextFragment fragment = it.fragment();
            if (fragment.position() + fragment.length() <= start || fragment.position() >= end)
                continue;
            visit(fragment.charFormat());
        }
    }
}

bool isBullet(const QTextBlock &block)
{
    const QTextList *list = block.textList();
    return list && list->format().style() == QTextListFormat::ListDisc;
}

// A layout that lays out nothing, for the time of a LayoutHold. It keeps
// the last size of the text, so that the scroll bars stay as they were.
class IdleLayout : public QAbstractTextDocumentLayout
{
public:
    IdleLayout(QTextDocument *doc, QSizeF size) : QAbstractTextDocumentLayout(doc), m_size(size) {}
    void draw(QPainter *, const PaintContext &) override {}
    int hitTest(const QPointF &, Qt::HitTestAccuracy) const override { return -1; }
    int pageCount() const override { return 1; }
    QSizeF documentSize() const override { return m_size; }
    QRectF frameBoundingRect(QTextFrame *) const override { return {}; }
    QRectF blockBoundingRect(const QTextBlock &) const override { return {}; }

protected:
    void documentChanged(int, int, int) override {}

private:
    QSizeF m_size;
};

} // namespace

template <typename T>
std::optional<T> RichTextBox::charValue(const std::function<T(const QTextCharFormat &)> &get) const
{
    const QTextCursor c = textCursor();
    if (!c.hasSelection())
        return get(currentCharFormat());
    std::optional<T> value;
    bool mixed = false;
    forEachCharFormat(document(), c.selectionStart(), c.selectionEnd(), [&](const QTextCharFormat &format) {
        const T v = get(format);
        if (!value)
            value = v;
        else if (!(*value == v))
            mixed = true;
    });
    if (mixed)
        return std::nullopt;
    if (!value)
        return get(c.charFormat());
    return value;
}

std::optional<bool> RichTextBox::charFlag(const std::function<bool(const QTextCharFormat &)> &test) const
{
    return charValue<bool>(test);
}

void RichTextBox::mergeFormat(const QTextCharFormat &format)
{
    FormatScope scope(*this);
    // With a selection it changes the selection; at a caret, what is typed next.
    mergeCurrentCharFormat(format);
}

std::optional<QString> RichTextBox::SelFontName() const
{
    const QString fallback = document()->defaultFont().family();
    return charValue<QString>([&fallback](const QTextCharFormat &f) {
        return f.hasProperty(QTextFormat::FontFamilies) ? f.font().family() : fallback;
    });
}

void RichTextBox::setSelFontName(const QString &name)
{
    QTextCharFormat f;
    f.setFontFamilies({name});
    mergeFormat(f);
}

std::optional<double> RichTextBox::SelFontSize() const
{
    const double fallback = document()->defaultFont().pointSizeF();
    return charValue<double>([fallback](const QTextCharFormat &f) {
        return f.hasProperty(QTextFormat::FontPointSize) ? f.fontPointSize() : fallback;
    });
}

void RichTextBox::setSelFontSize(double points)
{
    // The control refuses a size it cannot show; the command then does nothing.
    if (!(points > 0 && points <= 1638))
        return;
    QTextCharFormat f;
    f.setFontPointSize(points);
    mergeFormat(f);
}

std::optional<QColor> RichTextBox::SelColor() const
{
    const QColor fallback = palette().color(QPalette::Text);
    return charValue<QColor>([&fallback](const QTextCharFormat &f) {
        return f.hasProperty(QTextFormat::ForegroundBrush) ? f.foreground().color() : fallback;
    });
}

void RichTextBox::setSelColor(const QColor &color)
{
    QTextCharFormat f;
    f.setForeground(color);
    mergeFormat(f);
}

std::optional<bool> RichTextBox::SelBold() const
{
    return charFlag([](const QTextCharFormat &f) { return f.fontWeight() > QFont::Normal; });
}

void RichTextBox::setSelBold(bool on)
{
    QTextCharFormat f;
    f.setFontWeight(on ? QFont::Bold : QFont::Normal);
    mergeFormat(f);
}

std::optional<bool> RichTextBox::SelItalic() const
{
    return charFlag([](const QTextCharFormat &f) { return f.fontItalic(); });
}

void RichTextBox::setSelItalic(bool on)
{
    QTextCharFormat f;
    f.setFontItalic(on);
    mergeFormat(f);
}

std::optional<bool> RichTextBox::SelUnderline() const
{
    return charFlag([](const QTextCharFormat &f) { return f.fontUnderline(); });
}

void RichTextBox::setSelUnderline(bool on)
{
    QTextCharFormat f;
    f.setFontUnderline(on);
    mergeFormat(f);
}

std::optional<bool> RichTextBox::SelStrikeThru() const
{
    return charFlag([](const QTextCharFormat &f) { return f.fontStrikeOut(); });
}

void RichTextBox::setSelStrikeThru(bool on)
{
    QTextCharFormat f;
    f.setFontStrikeOut(on);
    mergeFormat(f);
}

std::optional<bool> RichTextBox::SelBullet() const
{
    const QTextCursor c = textCursor();
    std::optional<bool> value;
    for (QTextBlock b = document()->findBlock(c.selectionStart()); b.isValid(); b = b.next()) {
        const bool on = isBullet(b);
        if (value && *value != on)
            return std::nullopt;
        value = on;
        if (b.contains(c.selectionEnd()))
            break;
    }
    return value.value_or(false);
}

void RichTextBox::setSelBullet(bool on)
{
    FormatScope scope(*this);
    QTextCursor c = textCursor();
    if (on) {
        if (SelBullet() != std::optional<bool>(true))
            c.createList(QTextListFormat::ListDisc);
        return;
    }
    for (QTextBlock b = document()->findBlock(c.selectionStart()); b.isValid(); b = b.next()) {
        if (QTextList *list = b.textList())
            list->remove(b);
        QTextCursor at(b);
        QTextBlockFormat format = b.blockFormat();
        format.setIndent(0);
        at.setBlockFormat(format);
        if (b.contains(c.selectionEnd()))
            break;
    }
}

void RichTextBox::setSelAlignment(int alignment)
{
    FormatScope scope(*this);
    switch (alignment) {
    case 0:
        setAlignment(Qt::AlignLeft | Qt::AlignAbsolute);
        break;
    case 1:
        setAlignment(Qt::AlignRight | Qt::AlignAbsolute);
        break;
    case 2:
        setAlignment(Qt::AlignHCenter);
        break;
    default:
        break;
    }
}

// --- Files -------------------------------------------------------------------

bool RichTextBox::LoadFile(const QString &path, LoadOutcome *outcome)
{
    LoadOutcome found;
    const auto bytes = TextFile::readBytes(path);
    if (!bytes)
        return false;
    const bool rtf = Rtf::looksLikeRtf(*bytes);
    found.notText = !rtf && TextFile::looksBinary(*bytes);
    if (outcome)
        *outcome = found;
    // A word processor's file read as text would be garbage that one save
    // writes back under its name: the editor keeps what it has instead.
    if (found.notText)
        return false;

    EditScope scope(*this);
    wholeTextChanged();
    if (rtf) {
        found.lostContent = Rtf::load(*document(), bytes->mid(Rtf::rtfStart(*bytes))).lostContent;
    } else {
        QTextCursor c(document());
        c.select(QTextCursor::Document);
        c.removeSelectedText();
        c.setBlockFormat(QTextBlockFormat());
        c.setCharFormat(QTextCharFormat());
        insertPlain(c, TextFile::decode(*bytes, plainTextCodec.constData()));
    }
    if (outcome)
        *outcome = found;
    QTextCursor start(document());
    setTextCursor(start);
    return true;
}

bool RichTextBox::SaveFile(const QString &path, QString *error)
{
    return TextFile::writeBytes(path, Rtf::fromDocument(*document()), error);
}

qint32 RichTextBox::Find(const QString &text, qint32 start, int options)
{
    if (text.isEmpty())
        return -1;
    QTextDocument::FindFlags flags;
    if (options & 2)
        flags |= QTextDocument::FindWholeWords;
    if (options & 4)
        flags |= QTextDocument::FindCaseSensitively;
    const qint32 from = start < 0 ? SelStart() : start;
    const QTextCursor hit = document()->find(text, positionOf(from, false), flags);
    if (hit.isNull())
        return -1;
    if (!(options & 8))
        setTextCursor(hit);
    return unitsOf(hit.selectionStart());
}

RichTextBox::LayoutHold::LayoutHold(RichTextBox &box) : m_box(box)
{
    if (m_box.m_layoutHolds++ > 0)
        return;
    // Changing the layout reports the whole text as changed; it isn't.
    FormatScope format(m_box);
    QTextDocument *doc = m_box.document();
    doc->setDocumentLayout(new IdleLayout(doc, doc->documentLayout()->documentSize()));
}

RichTextBox::LayoutHold::~LayoutHold()
{
    if (--m_box.m_layoutHolds > 0)
        return;
    FormatScope format(m_box);
    QTextDocument *doc = m_box.document();
    // No layout given: the document makes its standard one again, and the
    // control, told of the change, connects to it.
    doc->setDocumentLayout(nullptr);
    doc->documentLayout()->setPaintDevice(m_box.viewport());
    m_box.ensureCursorVisible();
}

void RichTextBox::SelPrint(QPrinter &printer)
{
    const QTextCursor c = textCursor();
    std::unique_ptr<QTextDocument> copy;
    if (c.hasSelection()) {
        copy = std::make_unique<QTextDocument>();
        copy->setDefaultFont(document()->defaultFont());
        QTextCursor(copy.get()).insertFragment(c.selection());
    } else {
        copy.reset(document()->clone());
    }
    // The text laid out again on the printer's page, page after page; not
    // QTextDocument::print, which adds margins and a page number of its own.
    QPainter painter;
    if (!painter.begin(&printer))
        return;
    copy->documentLayout()->setPaintDevice(&printer);
    const QSizeF page = printer.pageLayout().paintRectPixels(printer.resolution()).size();
    copy->setPageSize(page);
    const int pages = copy->pageCount();
    for (int i = 0; i < pages; ++i) {
        if (i > 0)
            printer.newPage();
        painter.save();
        painter.translate(0, -i * page.height());
        QAbstractTextDocumentLayout::PaintContext context;
        context.clip = QRectF(0, i * page.height(), page.width(), page.height());
        copy->documentLayout()->draw(&painter, context);
        painter.restore();
    }
    painter.end();
}
