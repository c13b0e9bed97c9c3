#include "framework/windows/NativeStyle.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPixmap>
#include <QStyleOption>

namespace {

constexpr int kArrowSize = 12;

QIcon Arrow(const QStyle& style, QStyle::PrimitiveElement direction) {
    QPixmap picture(QSize(kArrowSize, kArrowSize) * qApp->devicePixelRatio());
    picture.setDevicePixelRatio(qApp->devicePixelRatio());
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    QStyleOption option;
    option.rect = QRect(0, 0, kArrowSize, kArrowSize);
    option.state = QStyle::State_Enabled;
    option.palette = QGuiApplication::palette();
    style.drawPrimitive(direction, &option, &painter);
    return QIcon(picture);
}

} // namespace

QIcon NativeStyle::standardIcon(StandardPixmap which, const QStyleOption* option, const QWidget* widget) const {
    if (which == SP_ToolBarVerticalExtensionButton)
        return Arrow(*this, PE_IndicatorArrowDown);
    if (which == SP_ToolBarHorizontalExtensionButton)
        return Arrow(*this, QGuiApplication::isRightToLeft() ? PE_IndicatorArrowLeft : PE_IndicatorArrowRight);
    return QProxyStyle::standardIcon(which, option, widget);
}
