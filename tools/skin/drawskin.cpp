// drawskin: draws every picture the program lays down in Files/: the player's
// skin (buttons with their lit twins, the title strip, the position and
// volume bars), the editor's toolbar strip, the pointing-hand pointer, the
// logo and the application icon. Everything is drawn here with QPainter, so
// a change of the look is a change of this file and a run of the tool.
//
// Build and run, outside the program's build:
//
//   cmake -S tools/skin -B build-skin
//   cmake --build build-skin
//   build-skin/drawskin data/Files
//
// Options:
//   --preview   also write preview.png into the out folder: every picture
//               enlarged four times on white, and the player window and the
//               toolbar put together at twice their size. Give it a scratch
//               folder, not data/Files, when only looking.
//   --list      print the names of the pictures and exit.
//   --icons     write the application icon in the desktop's sizes instead,
//               as hicolor/<n>x<n>/apps/quillmere.png below the out folder
//               (data/desktop for the installed program).
//
// The look: a dark slate body with a soft top-down gradient and a glassy top
// light, a thin teal rim, crisp white glyphs. The lit ("2") twin of a button
// has a lighter, teal-tinted body, a bright rim and a teal glow around it, and
// keeps the exact size and place of the resting one so that swapping the two
// never makes the button jump. The editor's strip is light, with slate
// glyphs and teal accents, because the editor window is light grey and the
// program writes the style letters over four of its buttons.
//
// Lettering (the logo, the "A" of the size and colour buttons) is set in
// DejaVu Sans, Debian's fonts-dejavu-core; the outputs are the same from run
// to run, so a regeneration only changes the files whose drawing changed.

#include <QDir>
#include <QFileInfo>
#include <QFont>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QImage>
#include <QImageWriter>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>
#include <QTextStream>
#include <QtMath>

#include <cstdio>
#include <functional>
#include <vector>

namespace {

// ---------------------------------------------------------------- palette

namespace ink {
const QColor slateTop(0x3b, 0x53, 0x64);
const QColor slateBottom(0x19, 0x26, 0x30);
const QColor slateGlyph(0x2a, 0x3c, 0x49);     // glyphs on light ground
const QColor litTop(0x3e, 0x71, 0x7c);
const QColor litBottom(0x16, 0x3c, 0x45);
const QColor rim(0x1d, 0x6e, 0x69);
const QColor rimLit(0x4d, 0xe3, 0xd5);
const QColor teal(0x1a, 0x9c, 0x92);
const QColor tealBright(0x46, 0xd6, 0xc8);
const QColor tealPale(0xc6, 0xee, 0xea);
const QColor glyph(0xf4, 0xf8, 0xfa);
const QColor glyphMuted(0x9d, 0xb2, 0xbf);
const QColor red(0xd6, 0x35, 0x2b);
const QColor redDeep(0x9c, 0x1f, 0x18);
const QColor redLit(0xff, 0x5e, 0x4e);
const QColor editorGrey(236, 236, 236);        // the editor window's ground
} // namespace ink

QColor withAlpha(QColor c, int alpha)
{
    c.setAlpha(alpha);
    return c;
}

QImage canvas(int w, int h, const QColor &ground)
{
    QImage img(w, h, QImage::Format_ARGB32_Premultiplied);
    img.fill(ground);
    return img;
}

void smooth(QPainter &p)
{
    p.setRenderHint(QPainter::Antialiasing);
    p.setRenderHint(QPainter::TextAntialiasing);
    p.setRenderHint(QPainter::SmoothPixmapTransform);
}

QFont sans(qreal pixels, bool bold = false)
{
    QFont f(QStringLiteral("DejaVu Sans"));
    f.setPixelSize(qRound(pixels));
    f.setBold(bold);
    f.setHintingPreference(QFont::PreferNoHinting);
    return f;
}

// ------------------------------------------------------- button bodies

// The halo of a lit button: teal, fading out over `spread` pixels.
void glow(QPainter &p, const QPainterPath &shape, qreal spread)
{
    p.save();
    p.setBrush(Qt::NoBrush);
    const int steps = 6;
    for (int i = steps; i >= 1; --i) {
        const qreal w = spread * 2.0 * i / steps;
        QPen pen(withAlpha(ink::tealBright, 34), w, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
        p.setPen(pen);
        p.drawPath(shape);
    }
    p.restore();
}

// The body shared by every button: a faint shadow, the rim, the gradient
// face and the glassy light on its upper half. `inner` is the face.
void body(QPainter &p, const QPainterPath &outer, const QPainterPath &inner, bool lit,
          QColor top = QColor(), QColor bottom = QColor())
{
    const QRectF r = outer.boundingRect();
    if (!top.isValid())
        top = lit ? ink::litTop : ink::slateTop;
    if (!bottom.isValid())
        bottom = lit ? ink::litBottom : ink::slateBottom;

    p.save();
    p.setPen(Qt::NoPen);
    if (!lit) {
        p.setBrush(QColor(0, 0, 0, 30));
        p.drawPath(outer.translated(0, 0.9));
    }
    p.setBrush(lit ? ink::rimLit : ink::rim);
    p.drawPath(outer);

    QLinearGradient face(r.topLeft(), r.bottomLeft());
    face.setColorAt(0.0, top);
    face.setColorAt(1.0, bottom);
    p.setBrush(face);
    p.drawPath(inner);

    // Glassy light: the face clipped to an ellipse over its top half.
    const QRectF ir = inner.boundingRect();
    QPainterPath gloss;
    gloss.addEllipse(QRectF(ir.left() - ir.width() * 0.15, ir.top() - ir.height() * 0.55,
                            ir.width() * 1.3, ir.height() * 1.05));
    gloss = gloss.intersected(inner);
    QLinearGradient light(ir.topLeft(), QPointF(ir.left(), ir.top() + ir.height() * 0.5));
    light.setColorAt(0.0, QColor(255, 255, 255, lit ? 80 : 62));
    light.setColorAt(1.0, QColor(255, 255, 255, 6));
    p.setBrush(light);
    p.drawPath(gloss);
    p.restore();
}

QPainterPath circle(QPointF c, qreal r)
{
    QPainterPath path;
    path.addEllipse(c, r, r);
    return path;
}

QPainterPath rounded(const QRectF &r, qreal radius)
{
    QPainterPath path;
    path.addRoundedRect(r, radius, radius);
    return path;
}

// Fills a glyph and traces its edge with a round pen, which softens the
// corners of triangles and squares the same way on every button.
void fillGlyph(QPainter &p, const QPainterPath &shape, const QColor &colour, qreal round = 1.2)
{
    p.save();
    // A hairline of shade under the glyph keeps it crisp on the lit face.
    p.setPen(QPen(QColor(0, 0, 0, 60), round, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.setBrush(QColor(0, 0, 0, 60));
    p.drawPath(shape.translated(0, 0.7));
    p.setPen(QPen(colour, round, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.setBrush(colour);
    p.drawPath(shape);
    p.restore();
}

QPainterPath triangle(QPointF a, QPointF b, QPointF c)
{
    QPainterPath path(a);
    path.lineTo(b);
    path.lineTo(c);
    path.closeSubpath();
    return path;
}

enum class Glyph { Play, Pause, Stop, Back, Forward, Record };

QPainterPath transportGlyph(Glyph g, QPointF c, qreal r)
{
    QPainterPath path;
    switch (g) {
    case Glyph::Play: {
        const qreal h = r * 0.86, w = h * 0.88;
        const qreal x = c.x() - w * 0.40; // optical centre sits right of the box's
        path = triangle({x, c.y() - h / 2}, {x + w, c.y()}, {x, c.y() + h / 2});
        break;
    }
    case Glyph::Pause: {
        const qreal h = r * 0.82, w = r * 0.25, gap = r * 0.22;
        path.addRoundedRect(QRectF(c.x() - gap / 2 - w, c.y() - h / 2, w, h), 1, 1);
        path.addRoundedRect(QRectF(c.x() + gap / 2, c.y() - h / 2, w, h), 1, 1);
        break;
    }
    case Glyph::Stop: {
        const qreal s = r * 0.72;
        path.addRoundedRect(QRectF(c.x() - s / 2, c.y() - s / 2, s, s), 1.2, 1.2);
        break;
    }
    case Glyph::Back:
    case Glyph::Forward: {
        const qreal h = r * 0.68, w = r * 0.46;
        const qreal dir = g == Glyph::Forward ? 1 : -1;
        // Two triangles nose to tail, centred as a pair.
        const qreal start = c.x() - dir * w;
        for (int i = 0; i < 2; ++i) {
            const qreal base = start + dir * w * i;
            path.addPath(triangle({base, c.y() - h / 2}, {base + dir * w, c.y()}, {base, c.y() + h / 2}));
        }
        break;
    }
    case Glyph::Record:
        break;
    }
    return path;
}

QImage roundButton(int w, int h, qreal r, Glyph g, bool lit)
{
    QImage img = canvas(w, h, Qt::white);
    QPainter p(&img);
    smooth(p);
    const QPointF c(w / 2.0, h / 2.0 - 0.25);
    const QPainterPath outer = circle(c, r);
    if (lit)
        glow(p, outer, qMin(w, h) / 2.0 - r);
    body(p, outer, circle(c, r - 1.4), lit);

    if (g == Glyph::Record) {
        const qreal d = r * 0.46;
        if (lit) {
            QRadialGradient halo(c, d * 1.9);
            halo.setColorAt(0.45, withAlpha(ink::redLit, 120));
            halo.setColorAt(1.0, withAlpha(ink::redLit, 0));
            p.setPen(Qt::NoPen);
            p.setBrush(halo);
            p.drawEllipse(c, d * 1.9, d * 1.9);
        }
        QRadialGradient dot(c - QPointF(d * 0.35, d * 0.4), d * 1.4);
        dot.setColorAt(0.0, lit ? QColor(0xff, 0xa0, 0x92) : QColor(0xf0, 0x6a, 0x5e));
        dot.setColorAt(0.45, lit ? ink::redLit : ink::red);
        dot.setColorAt(1.0, lit ? ink::red : ink::redDeep);
        p.setPen(QPen(QColor(0, 0, 0, 70), 0.8));
        p.setBrush(dot);
        p.drawEllipse(c, d, d);
    } else {
        fillGlyph(p, transportGlyph(g, c, r), lit ? Qt::white : ink::glyph);
    }
    return img;
}

// --------------------------------------------------------- open button

QImage openButton(bool lit)
{
    const int w = 44, h = 38;
    QImage img = canvas(w, h, Qt::white);
    QPainter p(&img);
    smooth(p);
    const QRectF box(3, 3, w - 6, h - 6);
    const QPainterPath outer = rounded(box, 9);
    if (lit)
        glow(p, outer, 3);
    body(p, outer, rounded(box.adjusted(1.4, 1.4, -1.4, -1.4), 7.8), lit);

    // Eject: a roof over a bar.
    const QPointF c = box.center();
    const qreal gw = 17, th = 8.5;
    QPainterPath eject = triangle({c.x() - gw / 2, c.y() + 1.5}, {c.x(), c.y() + 1.5 - th},
                                  {c.x() + gw / 2, c.y() + 1.5});
    eject.addRoundedRect(QRectF(c.x() - gw / 2, c.y() + 4, gw, 3.2), 1, 1);
    fillGlyph(p, eject.translated(0, -0.8), lit ? Qt::white : ink::glyph);
    return img;
}

// -------------------------------------------------------- smart play

// A quill nib under a cycle arrow: typing while the player runs in bursts.
QImage smartPlayButton(bool on)
{
    const int w = 30, h = 28;
    QImage img = canvas(w, h, Qt::white);
    QPainter p(&img);
    smooth(p);
    const QRectF box(1.5, 1.5, w - 3, h - 3);
    const QPainterPath outer = rounded(box, 6.5);
    if (on)
        body(p, outer, rounded(box.adjusted(1.3, 1.3, -1.3, -1.3), 5.4), true,
             QColor(0x3c, 0xc9, 0xbc), QColor(0x0c, 0x72, 0x6b));
    else
        body(p, outer, rounded(box.adjusted(1.3, 1.3, -1.3, -1.3), 5.4), false);

    const QColor colour = on ? Qt::white : ink::glyphMuted;
    const QPointF c = box.center() + QPointF(0, 0.2);

    // The cycle: an open ring with its arrowhead, clockwise.
    const qreal rr = 8.2;
    QPainterPath ring;
    const QRectF rb(c.x() - rr, c.y() - rr, 2 * rr, 2 * rr);
    ring.arcMoveTo(rb, 120);
    ring.arcTo(rb, 120, -300); // ends at 180 degrees, the left side
    QPainterPathStroker stroker;
    stroker.setWidth(1.7);
    stroker.setCapStyle(Qt::FlatCap);
    QPainterPath shape = stroker.createStroke(ring);
    const QPointF end(c.x() - rr, c.y());
    shape.addPath(triangle(end + QPointF(-3.1, 0.4), end + QPointF(3.1, 0.4), end + QPointF(0, -3.4)));

    // The nib, pointing down, in the middle of the ring.
    QPainterPath nib;
    const qreal top = c.y() - 5.6, bottom = c.y() + 5.6, collar = 2.3, shoulder = 3.9;
    nib.moveTo(c.x() - collar, top);
    nib.lineTo(c.x() + collar, top);
    nib.lineTo(c.x() + shoulder, top + 3.2);
    nib.cubicTo(c.x() + shoulder, top + 6.2, c.x() + 1.2, bottom - 2.2, c.x(), bottom);
    nib.cubicTo(c.x() - 1.2, bottom - 2.2, c.x() - shoulder, top + 6.2, c.x() - shoulder, top + 3.2);
    nib.closeSubpath();
    QPainterPath slit;
    slit.addEllipse(QPointF(c.x(), top + 4.4), 1.05, 1.05);
    slit.addRect(QRectF(c.x() - 0.4, top + 4.4, 0.8, bottom - top - 5.6));
    shape.addPath(nib.subtracted(slit));
    shape.setFillRule(Qt::WindingFill);

    p.save();
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0, 0, 0, on ? 70 : 50));
    p.drawPath(shape.translated(0, 0.7));
    p.setBrush(colour);
    p.drawPath(shape);
    p.restore();
    return img;
}

// ------------------------------------------------------------- bars

QImage titleStrip()
{
    const int w = 270, h = 55;
    QImage img = canvas(w, h, Qt::white);
    QPainter p(&img);
    smooth(p);
    const QRectF box(0.5, 0.5, w - 1, h - 1.5);
    QLinearGradient g(box.topLeft(), box.bottomLeft());
    g.setColorAt(0.0, QColor(0xfa, 0xfc, 0xfd));
    g.setColorAt(1.0, QColor(0xe5, 0xee, 0xf1));
    p.setPen(QPen(QColor(0xc2, 0xd1, 0xd8), 1));
    p.setBrush(g);
    p.drawRoundedRect(box, 8, 8);

    // A teal line along the foot, fading at both ends.
    QLinearGradient foot(box.left() + 10, 0, box.right() - 10, 0);
    foot.setColorAt(0.0, withAlpha(ink::teal, 0));
    foot.setColorAt(0.2, withAlpha(ink::teal, 200));
    foot.setColorAt(0.8, withAlpha(ink::teal, 200));
    foot.setColorAt(1.0, withAlpha(ink::teal, 0));
    p.setPen(QPen(QBrush(foot), 1.6, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(box.left() + 10, box.bottom() - 3.2), QPointF(box.right() - 10, box.bottom() - 3.2));

    // A light on the upper edge.
    p.setPen(QPen(QColor(255, 255, 255, 230), 1));
    p.drawLine(QPointF(box.left() + 7, box.top() + 1.2), QPointF(box.right() - 7, box.top() + 1.2));
    return img;
}

// The fill of the position bar. The program cuts it to the played part, so
// only its left end is rounded and it reads well at any cut; the position
// text is written over it in the window's dark text colour.
QImage positionBar()
{
    const int w = 309, h = 15;
    QImage img = canvas(w, h, Qt::white);
    QPainter p(&img);
    smooth(p);
    const QRectF box(0.5, 1, w + 8, h - 2);
    QLinearGradient g(box.topLeft(), box.bottomLeft());
    g.setColorAt(0.0, QColor(0xb2, 0xec, 0xe6));
    g.setColorAt(0.5, QColor(0x7f, 0xd7, 0xce));
    g.setColorAt(1.0, QColor(0x5c, 0xc0, 0xb6));
    p.setPen(QPen(QColor(0x3f, 0xa5, 0x9c), 1));
    p.setBrush(g);
    p.drawRoundedRect(box, 5, 5);
    p.setPen(QPen(QColor(255, 255, 255, 150), 1));
    p.drawLine(QPointF(5, 2.5), QPointF(w, 2.5));
    return img;
}

QImage volumeTrack()
{
    const int w = 6, h = 80;
    QImage img = canvas(w, h, Qt::white);
    QPainter p(&img);
    smooth(p);
    const QRectF box(0.5, 0.5, w - 1, h - 1);
    QLinearGradient g(box.topLeft(), box.bottomLeft());
    g.setColorAt(0.0, ink::tealBright);
    g.setColorAt(0.55, ink::teal);
    g.setColorAt(1.0, ink::slateTop);
    p.setPen(QPen(ink::slateBottom, 1));
    p.setBrush(g);
    p.drawRoundedRect(box, 2.5, 2.5);
    // The light along its left side.
    p.setPen(QPen(QColor(255, 255, 255, 110), 0.8));
    p.drawLine(QPointF(2, 3), QPointF(2, h - 3));
    return img;
}

QImage volumeKnob()
{
    const int w = 25, h = 13;
    QImage img = canvas(w, h, Qt::white);
    QPainter p(&img);
    smooth(p);
    const QRectF box(1, 1, w - 2, h - 2.4);
    body(p, rounded(box, box.height() / 2), rounded(box.adjusted(1.2, 1.2, -1.2, -1.2), box.height() / 2 - 1.2),
         false);
    // Three grip ridges.
    p.setPen(QPen(ink::glyph, 1.1, Qt::SolidLine, Qt::RoundCap));
    const QPointF c = box.center();
    for (int i = -1; i <= 1; ++i)
        p.drawLine(QPointF(c.x() + i * 3.2, c.y() - 2.2), QPointF(c.x() + i * 3.2, c.y() + 2.2));
    return img;
}

// ------------------------------------------------------------ quill

// A writing quill along the vertical axis, nib at (0, 0), the feather
// upwards and bending a little to the right, `len` long. The caller turns
// and places it.
QPainterPath quill(qreal len)
{
    const qreal L = len;
    const QPointF tip(0.075 * L, -L);
    const qreal base = -0.23 * L; // where the vane starts on the shaft
    QPainterPath feather(QPointF(0.012 * L, base));
    feather.cubicTo(0.17 * L, base - 0.13 * L, 0.23 * L, -0.74 * L, tip.x(), tip.y());
    feather.cubicTo(-0.03 * L, -0.86 * L, -0.13 * L, -0.50 * L, -0.012 * L, base);
    feather.closeSubpath();

    // Splits in the vane, running down and in along the barbs.
    QPainterPath cuts;
    auto split = [&](qreal y, qreal side, qreal inner) {
        const qreal out = side * 0.35 * L;
        cuts.addPath(triangle({out, y - 0.035 * L}, {out, y + 0.05 * L}, {side * inner * L, y + 0.11 * L}));
    };
    split(-0.66 * L, 1, 0.10);
    split(-0.50 * L, 1, 0.085);
    split(-0.70 * L, -1, 0.01);
    feather = feather.subtracted(cuts);

    // The bare shaft below the vane, cut to a nib.
    QPainterPath shaft;
    const qreal sw = 0.024 * L;
    shaft.moveTo(-sw, base - 0.03 * L);
    shaft.lineTo(sw, base - 0.03 * L);
    shaft.lineTo(sw * 0.95, -0.07 * L);
    shaft.lineTo(0.0, 0.0);
    shaft.lineTo(-sw * 0.95, -0.07 * L);
    shaft.closeSubpath();
    return feather.united(shaft);
}

// The spine of the quill's vane: a thin line drawn over the feather.
QPainterPath quillSpine(qreal len)
{
    QPainterPath spine(QPointF(0.0, -0.2 * len));
    spine.cubicTo(0.0, -0.5 * len, 0.035 * len, -0.8 * len, 0.07 * len, -0.96 * len);
    return spine;
}

// A waveform trace: a wave of changing height from `from` to `to`.
QPainterPath waveTrace(QPointF from, qreal length, qreal amplitude, int waves, qreal phase = 0)
{
    QPainterPath path(from);
    const int steps = waves * 16;
    for (int i = 1; i <= steps; ++i) {
        const qreal t = qreal(i) / steps;
        // The envelope swells and settles like a spoken phrase.
        const qreal env = qSin(t * M_PI) * (0.55 + 0.45 * qSin(t * 3.0 * M_PI + 0.6));
        const qreal y = qSin(t * waves * 2 * M_PI + phase) * amplitude * env;
        path.lineTo(from.x() + t * length, from.y() + y);
    }
    return path;
}

// ------------------------------------------------------------- logo

QImage logo()
{
    const int w = 238, h = 56;
    QImage img = canvas(w, h, Qt::transparent);
    QPainter p(&img);
    smooth(p);

    // The word mark.
    const QString quillPart = QStringLiteral("Quill");
    const QString merePart = QStringLiteral("mere");
    QFont bold = sans(31, true);
    bold.setLetterSpacing(QFont::AbsoluteSpacing, -0.6);
    QFont light = sans(31, false);
    light.setLetterSpacing(QFont::AbsoluteSpacing, -0.3);
    const qreal x0 = 55, baseline = 35;
    p.setFont(bold);
    p.setPen(ink::slateGlyph);
    p.drawText(QPointF(x0, baseline), quillPart);
    const qreal x1 = x0 + QFontMetricsF(bold).horizontalAdvance(quillPart) + 0.5;
    p.setFont(light);
    p.setPen(ink::teal);
    p.drawText(QPointF(x1, baseline), merePart);

    // The quill, its nib on the line where the wave starts.
    const QPointF nib(29, 48);
    p.save();
    p.translate(nib);
    p.rotate(22);
    QLinearGradient vane(QPointF(0, -48), QPointF(0, 0));
    vane.setColorAt(0.0, ink::tealBright);
    vane.setColorAt(1.0, ink::teal.darker(135));
    p.setPen(Qt::NoPen);
    p.setBrush(vane);
    p.drawPath(quill(50));
    p.setPen(QPen(QColor(255, 255, 255, 200), 1.0, Qt::SolidLine, Qt::RoundCap));
    p.setBrush(Qt::NoBrush);
    p.drawPath(quillSpine(50));
    p.restore();

    // The line the quill writes: a waveform under the word.
    const QPainterPath wave = waveTrace(nib, 200, 4.2, 11, 0.0);
    QLinearGradient fade(nib, nib + QPointF(200, 0));
    fade.setColorAt(0.0, withAlpha(ink::teal, 255));
    fade.setColorAt(0.7, withAlpha(ink::teal, 170));
    fade.setColorAt(1.0, withAlpha(ink::teal, 0));
    p.setPen(QPen(QBrush(fade), 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.drawPath(wave);
    return img;
}

// ------------------------------------------------- application icon

QImage appIcon(int size)
{
    QImage img = canvas(size, size, Qt::transparent);
    QPainter p(&img);
    smooth(p);
    const qreal s = size / 256.0;
    p.scale(s, s);

    const QRectF box(8, 8, 240, 240);
    QLinearGradient g(box.topLeft(), box.bottomRight());
    g.setColorAt(0.0, QColor(0x3d, 0x58, 0x6a));
    g.setColorAt(1.0, QColor(0x14, 0x20, 0x29));
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0, 0, 0, 45));
    p.drawRoundedRect(box.translated(0, 3), 54, 54);
    p.setBrush(g);
    p.drawRoundedRect(box, 54, 54);
    // The inner teal line stays at least a pixel and a half wide when small.
    p.setPen(QPen(withAlpha(ink::tealBright, 150), qMax(4.0, 1.5 / s)));
    p.setBrush(Qt::NoBrush);
    p.drawRoundedRect(box.adjusted(3, 3, -3, -3), 51, 51);

    // The waveform the quill writes: level bars, tallest in the middle.
    const int bars = size >= 128 ? 11 : 7;
    const qreal left = 44, right = 212, mid = 176;
    const qreal step = (right - left) / (bars - 1);
    const qreal bw = size >= 128 ? 9 : 16;
    for (int i = 0; i < bars; ++i) {
        const qreal t = qreal(i) / (bars - 1);
        const qreal env = qSin(t * M_PI) * (0.55 + 0.45 * qAbs(qSin(t * 2.6 * M_PI + 0.5)));
        const qreal bh = 14 + 58 * env;
        QLinearGradient bar(QPointF(0, mid - bh / 2), QPointF(0, mid + bh / 2));
        bar.setColorAt(0.0, ink::tealBright);
        bar.setColorAt(1.0, ink::teal);
        p.setPen(Qt::NoPen);
        p.setBrush(bar);
        p.drawRoundedRect(QRectF(left + i * step - bw / 2, mid - bh / 2, bw, bh), bw / 2, bw / 2);
    }

    // The quill.
    p.save();
    p.translate(96, 206);
    p.rotate(32);
    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0, 0, 0, 70));
    p.drawPath(quill(190).translated(4, 4));
    QLinearGradient vane(QPointF(-40, 0), QPointF(40, 0));
    vane.setColorAt(0.0, QColor(0xff, 0xff, 0xff));
    vane.setColorAt(1.0, QColor(0xdc, 0xe8, 0xec));
    p.setBrush(vane);
    p.drawPath(quill(190));
    p.setPen(QPen(withAlpha(ink::slateTop, 170), size >= 128 ? 3 : 5, Qt::SolidLine, Qt::RoundCap));
    p.setBrush(Qt::NoBrush);
    p.drawPath(quillSpine(190));
    p.restore();
    return img;
}

// ---------------------------------------------------------- pointer

// The pointing hand shown over the buttons. The program puts the hot spot
// at (6, 1), the tip of the index finger.
QImage pointingHand()
{
    QImage img = canvas(32, 32, Qt::transparent);
    QPainter p(&img);
    smooth(p);

    QPainterPath hand;
    hand.addRoundedRect(QRectF(3.5, 0.5, 5.5, 17), 2.75, 2.75);            // index finger
    hand = hand.united(rounded(QRectF(8.0, 8.5, 5.0, 10), 2.5));            // middle
    hand = hand.united(rounded(QRectF(12.0, 9.5, 5.0, 9.5), 2.5));          // ring
    hand = hand.united(rounded(QRectF(16.0, 11.0, 4.5, 8.5), 2.25));        // little
    hand = hand.united(rounded(QRectF(3.5, 13.0, 17.0, 11.5), 4.5));         // palm
    QPainterPath thumb;
    thumb.moveTo(4.0, 15.5);
    thumb.cubicTo(2.0, 13.0, -0.4, 14.2, 0.8, 16.6);
    thumb.lineTo(4.5, 22.5);
    thumb.closeSubpath();
    hand = hand.united(thumb);
    QPainterPath wrist;
    wrist.moveTo(5.0, 22.0);
    wrist.lineTo(19.5, 22.0);
    wrist.lineTo(18.5, 27.5);
    wrist.lineTo(6.5, 27.5);
    wrist.closeSubpath();
    hand = hand.united(wrist).simplified();

    p.setPen(QPen(ink::slateBottom, 1.15, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.setBrush(Qt::white);
    p.drawPath(hand);

    // The creases between the bent fingers.
    p.setPen(QPen(ink::slateBottom, 0.9, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(12.4, 11.2), QPointF(12.4, 15.0));
    p.drawLine(QPointF(16.3, 12.4), QPointF(16.3, 16.0));

    // A teal cuff.
    QPainterPath cuff;
    cuff.addRoundedRect(QRectF(6.0, 26.0, 13.2, 4.8), 1.2, 1.2);
    p.setPen(QPen(ink::slateBottom, 1.0));
    p.setBrush(ink::teal);
    p.drawPath(cuff);
    return img;
}

// ----------------------------------------------------- editor toolbar

struct ToolSlot
{
    const char *name;
    int x, w;
};

// The hot areas the editor lays over the strip, left to right.
const ToolSlot toolSlots[] = {
    {"new", 0, 29},       {"open", 29, 30},     {"save", 58, 29},        {"print", 86, 32},
    {"undo", 122, 29},    {"redo", 150, 29},    {"bold", 182, 31},       {"italic", 210, 29},
    {"underline", 238, 31}, {"strike", 266, 31}, {"left", 300, 30},      {"centre", 330, 30},
    {"right", 360, 30},   {"bigger", 393, 31},  {"smaller", 424, 31},    {"colour", 453, 31},
    {"bullets", 487, 31},
};

void strokeGlyph(QPainter &p, const QPainterPath &path, const QColor &c, qreal w = 1.5)
{
    p.setPen(QPen(c, w, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.setBrush(Qt::NoBrush);
    p.drawPath(path);
}

void arrowHead(QPainter &p, QPointF tip, qreal angleDeg, qreal size, const QColor &c)
{
    const qreal a = qDegreesToRadians(angleDeg);
    const QPointF dir(qCos(a), qSin(a)), side(-dir.y(), dir.x());
    const QPointF back = tip - dir * size;
    p.setPen(QPen(c, 1.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    p.setBrush(c);
    p.drawPath(triangle(tip, back + side * size * 0.62, back - side * size * 0.62));
}

// Draws one icon centred on `c`.
void toolIcon(QPainter &p, const QString &name, QPointF c)
{
    const QColor slate = ink::slateGlyph, teal = ink::teal;
    p.save();
    p.translate(c);
    if (name == QStringLiteral("new")) {
        QPainterPath page;
        page.moveTo(-5.5, -8);
        page.lineTo(2.0, -8);
        page.lineTo(5.5, -4.5);
        page.lineTo(5.5, 8);
        page.lineTo(-5.5, 8);
        page.closeSubpath();
        p.setPen(QPen(slate, 1.3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        p.setBrush(Qt::white);
        p.drawPath(page);
        QPainterPath fold(QPointF(2.0, -8));
        fold.lineTo(2.0, -4.5);
        fold.lineTo(5.5, -4.5);
        strokeGlyph(p, fold, slate, 1.1);
        p.setPen(QPen(teal, 1.4, Qt::SolidLine, Qt::RoundCap));
        for (int i = 0; i < 3; ++i)
            p.drawLine(QPointF(-3, -1.0 + i * 3), QPointF(i == 2 ? 0.5 : 3, -1.0 + i * 3));
    } else if (name == QStringLiteral("open")) {
        QPainterPath back;
        back.moveTo(-7.5, 6.5);
        back.lineTo(-7.5, -6);
        back.lineTo(-3, -6);
        back.lineTo(-1.5, -4);
        back.lineTo(5.5, -4);
        back.lineTo(5.5, -1);
        p.setPen(QPen(slate, 1.3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        p.setBrush(Qt::NoBrush);
        p.drawPath(back);
        QPainterPath flap;
        flap.moveTo(-7.5, 6.5);
        flap.lineTo(-4.5, -1);
        flap.lineTo(8.5, -1);
        flap.lineTo(5.5, 6.5);
        flap.closeSubpath();
        QLinearGradient g(QPointF(0, -1), QPointF(0, 6.5));
        g.setColorAt(0, ink::tealBright);
        g.setColorAt(1, ink::teal);
        p.setBrush(g);
        p.drawPath(flap);
    } else if (name == QStringLiteral("save")) {
        QPainterPath disk;
        disk.moveTo(-7, -7);
        disk.lineTo(4.5, -7);
        disk.lineTo(7, -4.5);
        disk.lineTo(7, 7);
        disk.lineTo(-7, 7);
        disk.closeSubpath();
        p.setPen(QPen(slate, 1.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        p.setBrush(slate);
        p.drawPath(disk);
        p.setPen(Qt::NoPen);
        p.setBrush(ink::tealBright);
        p.drawRect(QRectF(-3.8, -7, 7, 4.6));
        p.setBrush(slate);
        p.drawRect(QRectF(0.8, -6.2, 1.6, 3));
        p.setBrush(Qt::white);
        p.drawRoundedRect(QRectF(-4.8, 0.6, 9.6, 5.6), 0.8, 0.8);
        p.setPen(QPen(QColor(0xa9, 0xb8, 0xc2), 0.9));
        p.drawLine(QPointF(-3, 2.6), QPointF(3, 2.6));
        p.drawLine(QPointF(-3, 4.4), QPointF(3, 4.4));
    } else if (name == QStringLiteral("print")) {
        p.setPen(QPen(slate, 1.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        p.setBrush(Qt::white);
        p.drawRect(QRectF(-4.5, -8, 9, 6));                                // paper in
        QLinearGradient g(QPointF(0, -3), QPointF(0, 4));
        g.setColorAt(0, ink::slateTop);
        g.setColorAt(1, ink::slateBottom);
        p.setBrush(g);
        p.drawRoundedRect(QRectF(-8.5, -3, 17, 8), 2, 2);                  // body
        p.setBrush(Qt::white);
        p.drawRect(QRectF(-4.5, 2, 9, 6.5));                               // paper out
        p.setPen(QPen(teal, 1.1, Qt::SolidLine, Qt::RoundCap));
        p.drawLine(QPointF(-2.5, 4.6), QPointF(2.5, 4.6));
        p.drawLine(QPointF(-2.5, 6.6), QPointF(1.0, 6.6));
        p.setPen(Qt::NoPen);
        p.setBrush(ink::tealBright);
        p.drawEllipse(QPointF(6, -0.5), 1.0, 1.0);
    } else if (name == QStringLiteral("undo") || name == QStringLiteral("redo")) {
        const qreal dir = name == QStringLiteral("undo") ? 1 : -1;
        p.scale(dir, 1);
        QPainterPath arc;
        arc.moveTo(5.5, 6.5);
        arc.cubicTo(8.8, 2.0, 6.5, -4.0, 0.5, -4.0);
        arc.lineTo(-3.5, -4.0);
        strokeGlyph(p, arc, slate, 2.0);
        arrowHead(p, QPointF(-8.0, -4.0), 180, 5.0, teal);
    } else if (name == QStringLiteral("bold") || name == QStringLiteral("italic")
               || name == QStringLiteral("underline") || name == QStringLiteral("strike")) {
        // The program writes the style letter here: a plain key cap.
        const QRectF cap(-11.5, -10.5, 23, 21);
        QLinearGradient g(cap.topLeft(), cap.bottomLeft());
        g.setColorAt(0, QColor(0xff, 0xff, 0xff));
        g.setColorAt(1, QColor(0xe9, 0xef, 0xf2));
        p.setPen(QPen(QColor(0xc3, 0xd0, 0xd7), 1));
        p.setBrush(g);
        p.drawRoundedRect(cap, 4, 4);
    } else if (name == QStringLiteral("left") || name == QStringLiteral("centre")
               || name == QStringLiteral("right")) {
        const qreal lengths[4] = {15, 10, 15, 8};
        for (int i = 0; i < 4; ++i) {
            const qreal len = lengths[i];
            qreal x = -7.5;
            if (name == QStringLiteral("centre"))
                x = -len / 2;
            else if (name == QStringLiteral("right"))
                x = 7.5 - len;
            p.setPen(QPen(i == 0 ? teal : slate, 1.7, Qt::SolidLine, Qt::RoundCap));
            p.drawLine(QPointF(x, -6 + i * 4), QPointF(x + len, -6 + i * 4));
        }
    } else if (name == QStringLiteral("bigger") || name == QStringLiteral("smaller")) {
        const bool up = name == QStringLiteral("bigger");
        QFont f = sans(up ? 17 : 13, true);
        p.setFont(f);
        p.setPen(slate);
        p.drawText(QPointF(up ? -7.5 : -6.5, up ? 6.5 : 6.0), QStringLiteral("A"));
        const qreal ax = 6.0, ay = up ? -3.5 : -2.5;
        p.setPen(Qt::NoPen);
        p.setBrush(teal);
        if (up)
            p.drawPath(triangle({ax - 3.6, ay + 2.2}, {ax + 3.6, ay + 2.2}, {ax, ay - 2.6}));
        else
            p.drawPath(triangle({ax - 3.6, ay - 2.2}, {ax + 3.6, ay - 2.2}, {ax, ay + 2.6}));
    } else if (name == QStringLiteral("colour")) {
        QFont f = sans(14, true);
        p.setFont(f);
        p.setPen(slate);
        p.drawText(QPointF(-5.0, 3.0), QStringLiteral("A"));
        QLinearGradient g(QPointF(-7.5, 0), QPointF(7.5, 0));
        g.setColorAt(0.0, QColor(0xe0, 0x3c, 0x31));
        g.setColorAt(0.35, QColor(0xf2, 0xb1, 0x2c));
        g.setColorAt(0.7, ink::tealBright);
        g.setColorAt(1.0, QColor(0x3a, 0x6f, 0xd8));
        p.setPen(QPen(ink::slateGlyph, 0.8));
        p.setBrush(g);
        p.drawRoundedRect(QRectF(-7.5, 4.6, 15, 3.8), 1, 1);
    } else if (name == QStringLiteral("bullets")) {
        for (int i = 0; i < 3; ++i) {
            const qreal y = -5.5 + i * 5.5;
            p.setPen(Qt::NoPen);
            p.setBrush(teal);
            p.drawEllipse(QPointF(-5.5, y), 1.9, 1.9);
            p.setPen(QPen(slate, 1.7, Qt::SolidLine, Qt::RoundCap));
            p.drawLine(QPointF(-1.5, y), QPointF(7.5, y));
        }
    }
    p.restore();
}

QImage toolbar()
{
    const int w = 520, h = 26;
    QImage img = canvas(w, h, ink::editorGrey);
    QPainter p(&img);
    smooth(p);
    const QRectF box(0.5, 0.5, w - 1, h - 1);
    QLinearGradient g(box.topLeft(), box.bottomLeft());
    g.setColorAt(0.0, QColor(0xfc, 0xfd, 0xfe));
    g.setColorAt(1.0, QColor(0xe6, 0xec, 0xef));
    p.setPen(QPen(QColor(0xc4, 0xce, 0xd4), 1));
    p.setBrush(g);
    p.drawRoundedRect(box, 5, 5);

    // Rules between the groups.
    for (qreal x : {120.0, 180.5, 298.5, 391.5}) {
        p.setPen(QPen(QColor(0xc4, 0xce, 0xd4), 1));
        p.drawLine(QPointF(x, 5), QPointF(x, h - 5));
        p.setPen(QPen(Qt::white, 1));
        p.drawLine(QPointF(x + 1, 5), QPointF(x + 1, h - 5));
    }
    for (const ToolSlot &slot : toolSlots)
        toolIcon(p, QString::fromLatin1(slot.name), QPointF(slot.x + slot.w / 2.0, h / 2.0));
    return img;
}

// ------------------------------------------------------------ output

struct Picture
{
    QString file;
    std::function<QImage()> draw;
};

std::vector<Picture> pictures()
{
    auto round = [](int w, int h, qreal r, Glyph g, bool lit) {
        return [=] { return roundButton(w, h, r, g, lit); };
    };
    return {
        {QStringLiteral("play.jpg"), round(48, 49, 21.0, Glyph::Play, false)},
        {QStringLiteral("play2.jpg"), round(48, 49, 21.0, Glyph::Play, true)},
        {QStringLiteral("pause.jpg"), round(48, 49, 21.0, Glyph::Pause, false)},
        {QStringLiteral("pause2.jpg"), round(48, 49, 21.0, Glyph::Pause, true)},
        {QStringLiteral("bac.jpg"), round(36, 37, 15.0, Glyph::Back, false)},
        {QStringLiteral("bac2.jpg"), round(36, 37, 15.0, Glyph::Back, true)},
        {QStringLiteral("stop.jpg"), round(36, 37, 15.0, Glyph::Stop, false)},
        {QStringLiteral("stop2.jpg"), round(36, 37, 15.0, Glyph::Stop, true)},
        {QStringLiteral("for.jpg"), round(36, 37, 15.0, Glyph::Forward, false)},
        {QStringLiteral("for2.jpg"), round(36, 37, 15.0, Glyph::Forward, true)},
        {QStringLiteral("rec.jpg"), round(30, 30, 12.0, Glyph::Record, false)},
        {QStringLiteral("rec2.jpg"), round(30, 30, 12.0, Glyph::Record, true)},
        {QStringLiteral("Apri.bmp"), [] { return openButton(false); }},
        {QStringLiteral("Apri2.bmp"), [] { return openButton(true); }},
        {QStringLiteral("detta.jpg"), [] { return smartPlayButton(false); }},
        {QStringLiteral("detta2.jpg"), [] { return smartPlayButton(true); }},
        {QStringLiteral("Indica.ico"), pointingHand},
        {QStringLiteral("logo.png"), logo},
        {QStringLiteral("strip.jpg"), titleStrip},
        {QStringLiteral("bar.jpg"), positionBar},
        {QStringLiteral("volbar.jpg"), volumeTrack},
        {QStringLiteral("volknob.jpg"), volumeKnob},
        {QStringLiteral("toolbar.bmp"), toolbar},
        {QStringLiteral("quillmere.png"), [] { return appIcon(256); }},
        {QStringLiteral("quillmere-48.png"), [] { return appIcon(48); }},
    };
}

bool save(const QImage &image, const QString &path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    QImageWriter writer(path);
    writer.setFormat(suffix.toLatin1());
    QImage out = image;
    if (suffix == QStringLiteral("jpg")) {
        writer.setQuality(92);
        writer.setOptimizedWrite(true);
        out = image.convertToFormat(QImage::Format_RGB32);
    } else if (suffix == QStringLiteral("bmp")) {
        out = image.convertToFormat(QImage::Format_RGB888);
    } else if (suffix == QStringLiteral("png")) {
        writer.setQuality(0); // for PNG: the strongest compression
        out = image.convertToFormat(QImage::Format_ARGB32);
    } else {
        out = image.convertToFormat(QImage::Format_ARGB32);
    }
    if (!writer.write(out)) {
        std::fprintf(stderr, "drawskin: %s: %s\n", qPrintable(path), qPrintable(writer.errorString()));
        return false;
    }
    return true;
}

// ----------------------------------------------------------- preview

QImage readBack(const QString &folder, const QString &file)
{
    return QImage(QDir(folder).filePath(file)).convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

// The player window as the program lays it out, in pixels, with a file
// open: the pictures read back from the folder, so the preview shows what
// the compression left of them.
QImage playerMockup(const QString &folder, bool playing)
{
    QImage w = canvas(348, 175, Qt::white);
    QPainter p(&w);
    smooth(p);
    auto put = [&](const QString &file, int x, int y, QSize stretch = QSize()) {
        QImage img = readBack(folder, file);
        if (stretch.isValid())
            img = img.scaled(stretch, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        p.drawImage(x, y, img);
    };
    p.setFont(sans(12));
    p.setPen(Qt::black);
    if (playing) {
        put(QStringLiteral("strip.jpg"), 20, 12, QSize(270, 55));
        p.setFont(sans(19));
        p.drawText(QRectF(22, 12, 269, 55), Qt::AlignCenter, QStringLiteral("interview-0412.ogg"));
    } else {
        put(QStringLiteral("logo.png"), 46, 18);
    }
    put(QStringLiteral("Apri.bmp"), 20, 90);
    put(playing ? QStringLiteral("pause2.jpg") : QStringLiteral("play.jpg"), 70, 84);
    put(QStringLiteral("bac.jpg"), 116, 90);
    put(playing ? QStringLiteral("stop.jpg") : QStringLiteral("stop2.jpg"), 154, 90);
    put(QStringLiteral("for.jpg"), 192, 90);
    put(QStringLiteral("rec.jpg"), 230, 93);
    put(playing ? QStringLiteral("detta2.jpg") : QStringLiteral("detta.jpg"), 272, 95);
    put(QStringLiteral("volbar.jpg"), 321, 24, QSize(6, 80));
    put(QStringLiteral("volknob.jpg"), 311, playing ? 52 : 82);
    p.setFont(sans(12));
    p.drawText(QRectF(318, 3, 11, 24), Qt::AlignCenter, QStringLiteral("+"));
    p.drawText(QRectF(320, 91, 8, 29), Qt::AlignCenter, QStringLiteral("-"));
    const int played = playing ? 124 : 0;
    if (played > 0)
        p.drawImage(20, 146, readBack(folder, QStringLiteral("bar.jpg")).copy(0, 0, played, 15));
    p.setFont(sans(11));
    p.drawText(QRectF(20, 146, 309, 16), Qt::AlignCenter,
               playing ? QStringLiteral("0:42 / 1:45") : QStringLiteral("0:00 / 1:45"));
    return w;
}

// The editor's strip on its grey ground, with the letters the program
// writes over the style buttons and its hover mark on one button.
QImage toolbarMockup(const QString &folder)
{
    QImage w = canvas(560, 34, ink::editorGrey);
    QPainter p(&w);
    smooth(p);
    p.drawImage(10, 4, readBack(folder, QStringLiteral("toolbar.bmp")));
    const char *letters[4] = {"G", "i", "S", "b"};
    for (int i = 0; i < 4; ++i) {
        const ToolSlot &slot = toolSlots[6 + i];
        QFont f(QStringLiteral("DejaVu Sans"));
        f.setPixelSize(19);
        f.setBold(i == 0);
        f.setItalic(i == 1);
        f.setUnderline(i == 2);
        f.setStrikeOut(i == 3);
        p.setFont(f);
        p.setPen(Qt::black);
        p.drawText(QRectF(10 + slot.x, i == 0 ? 6 : 5.3, slot.w, 23), Qt::AlignCenter, QString::fromLatin1(letters[i]));
    }
    p.setPen(QPen(QColor(0x80, 0x80, 0x80), 1));
    p.setBrush(Qt::NoBrush);
    p.drawRoundedRect(QRectF(10 + 150 + 0.5, 2.5, 29, 28), 4, 4);
    return w;
}

bool writePreview(const QString &folder)
{
    const int scale = 4, margin = 24, maxWidth = 2200;
    struct Tile
    {
        QString label;
        QImage image;
        int scale;
    };
    std::vector<Tile> tiles;
    for (const Picture &pic : pictures())
        tiles.push_back({pic.file, readBack(folder, pic.file), scale});
    tiles.push_back({QStringLiteral("player, idle (x2)"), playerMockup(folder, false), 2});
    tiles.push_back({QStringLiteral("player, playing (x2)"), playerMockup(folder, true), 2});
    tiles.push_back({QStringLiteral("editor strip (x2)"), toolbarMockup(folder), 2});
    tiles.push_back({QStringLiteral("player, actual size"), playerMockup(folder, true), 1});

    // Lay the tiles out in rows.
    struct Placed
    {
        const Tile *tile;
        QPoint at;
    };
    std::vector<Placed> placed;
    int x = margin, y = margin, rowHeight = 0, width = 0;
    const int labelHeight = 22;
    for (const Tile &t : tiles) {
        const QSize s = t.image.size() * t.scale;
        if (x > margin && x + s.width() > maxWidth) {
            x = margin;
            y += rowHeight + margin;
            rowHeight = 0;
        }
        placed.push_back({&t, QPoint(x, y)});
        x += s.width() + margin;
        width = qMax(width, x);
        rowHeight = qMax(rowHeight, s.height() + labelHeight);
    }
    const int height = y + rowHeight + margin;

    QImage sheet = canvas(width, height, Qt::white);
    QPainter p(&sheet);
    p.setRenderHint(QPainter::TextAntialiasing);
    p.setFont(sans(15));
    for (const Placed &pl : placed) {
        const QImage &img = pl.tile->image;
        const QSize s = img.size() * pl.tile->scale;
        // A checker under transparent pictures, a thin frame around all.
        if (img.hasAlphaChannel()) {
            for (int cy = 0; cy < s.height(); cy += 16)
                for (int cx = 0; cx < s.width(); cx += 16)
                    if (((cx + cy) / 16) % 2)
                        p.fillRect(QRect(pl.at + QPoint(cx, cy), QSize(16, 16)).intersected(QRect(pl.at, s)),
                                   QColor(0xee, 0xee, 0xee));
        }
        p.drawImage(QRect(pl.at, s), img.scaled(s, Qt::IgnoreAspectRatio, Qt::FastTransformation));
        p.setPen(QColor(0xdd, 0xdd, 0xdd));
        p.drawRect(QRect(pl.at, s).adjusted(-1, -1, 0, 0));
        p.setPen(QColor(0x44, 0x44, 0x44));
        p.drawText(pl.at + QPoint(0, s.height() + 17), pl.tile->label);
    }
    p.end();
    return save(sheet, QDir(folder).filePath(QStringLiteral("preview.png")));
}

} // namespace

int main(int argc, char **argv)
{
    // Drawing needs no screen.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);

    QString folder;
    bool preview = false;
    bool icons = false;
    const QStringList args = app.arguments().mid(1);
    for (const QString &arg : args) {
        if (arg == QStringLiteral("--preview")) {
            preview = true;
        } else if (arg == QStringLiteral("--icons")) {
            icons = true;
        } else if (arg == QStringLiteral("--list")) {
            QTextStream out(stdout);
            for (const Picture &pic : pictures())
                out << pic.file << '\n';
            return 0;
        } else if (arg.startsWith(u'-')) {
            std::fprintf(stderr, "drawskin: unknown option %s\n", qPrintable(arg));
            return 2;
        } else {
            folder = arg;
        }
    }
    if (folder.isEmpty()) {
        std::fprintf(stderr, "usage: drawskin [--preview] [--list] <out-folder>\n");
        return 2;
    }
    for (const char *format : {"jpg", "bmp", "png", "ico"}) {
        if (!QImageWriter::supportedImageFormats().contains(format)) {
            std::fprintf(stderr, "drawskin: this Qt cannot write %s pictures (image format plugin missing)\n", format);
            return 1;
        }
    }
    if (!QDir().mkpath(folder)) {
        std::fprintf(stderr, "drawskin: cannot create %s\n", qPrintable(folder));
        return 1;
    }

    bool ok = true;
    if (icons) {
        for (const int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
            const QString dir = QStringLiteral("%1/hicolor/%2x%2/apps").arg(folder).arg(size);
            ok = QDir().mkpath(dir) && save(appIcon(size), dir + QStringLiteral("/quillmere.png")) && ok;
        }
        return ok ? 0 : 1;
    }
    for (const Picture &pic : pictures())
        ok = save(pic.draw(), QDir(folder).filePath(pic.file)) && ok;
    if (ok && preview)
        ok = writePreview(folder);
    return ok ? 0 : 1;
}
