#include "app/AppStyle.h"

#include <QIconEngine>
#include <QPointer>
#include <functional>
#include <optional>

namespace {

// An icon made the first time it is drawn, measured or asked about.
class MadeWhenUsed : public QIconEngine
{
public:
    explicit MadeWhenUsed(std::function<QIcon()> make) : m_make(std::move(make)) {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        icon().paint(painter, rect, Qt::AlignCenter, mode, state);
    }
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return icon().pixmap(size, mode, state);
    }
    QPixmap scaledPixmap(const QSize &size, QIcon::Mode mode, QIcon::State state, qreal scale) override
    {
        return icon().pixmap(size, scale, mode, state);
    }
    QSize actualSize(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return icon().actualSize(size, mode, state);
    }
    QList<QSize> availableSizes(QIcon::Mode mode, QIcon::State state) override
    {
        return icon().availableSizes(mode, state);
    }
    bool isNull() override { return icon().isNull(); }
    QString key() const override { return QStringLiteral("MadeWhenUsed"); }
    QIconEngine *clone() const override { return new MadeWhenUsed(*this); }

private:
    const QIcon &icon()
    {
        if (!m_icon)
            m_icon = m_make();
        return *m_icon;
    }

    std::function<QIcon()> m_make;
    std::optional<QIcon> m_icon;
};

} // namespace

QIcon AppStyle::standardIcon(StandardPixmap which, const QStyleOption *option, const QWidget *widget) const
{
    // Every menu bar makes the icon of its overflow button, shown only when
    // the menus do not fit. Reading it identifies the picture by its
    // content, which loads every picture format plug-in there is: worth
    // it, if at all, when the button is drawn.
    if (which != SP_ToolBarHorizontalExtensionButton)
        return QProxyStyle::standardIcon(which, option, widget);
    // The button asks with no option: the icon follows the application's
    // direction, as it would have.
    const QPointer<QStyle> base = baseStyle();
    return QIcon(new MadeWhenUsed([base, which] { return base ? base->standardIcon(which) : QIcon(); }));
}
