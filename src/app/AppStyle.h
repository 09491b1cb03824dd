// The program's style: the desktop's own, with the icons nobody may ever
// see made when first drawn rather than with their widget.
#pragma once

#include <QProxyStyle>

class AppStyle : public QProxyStyle
{
public:
    QIcon standardIcon(StandardPixmap which, const QStyleOption *option = nullptr,
                       const QWidget *widget = nullptr) const override;
};
