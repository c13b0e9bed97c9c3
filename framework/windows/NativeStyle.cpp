#include "framework/windows/NativeStyle.h"

#include "framework/base/Program.h"

#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QPainter>
#include <QPixmap>
#include <QStyleOption>

namespace {

constexpr int kArrowSize = 12;
constexpr int kLightUpper = 104, kDarkEdge = 140; // per cent of the window's own lightness and darkness

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

// As Qt's own style has it, but for its lines: those go through threads, which are made for the first of them.
void DrawToolbar(QPainter& painter, const QStyleOption& option) {
    const QColor window = option.palette.window().color();
    QLinearGradient background(option.rect.topLeft(), option.rect.bottomLeft());
    background.setColorAt(0, window.lighter(kLightUpper));
    background.setColorAt(1, window);
    QRect edge = option.rect;
    edge.setTop(edge.bottom());
    painter.fillRect(option.rect, background);
    painter.fillRect(edge, window.darker(kDarkEdge));
}

} // namespace

QIcon NativeStyle::standardIcon(StandardPixmap which, const QStyleOption* option, const QWidget* widget) const {
    if (which == SP_ToolBarVerticalExtensionButton)
        return Arrow(*this, PE_IndicatorArrowDown);
    if (which == SP_ToolBarHorizontalExtensionButton)
        return Arrow(*this, QGuiApplication::isRightToLeft() ? PE_IndicatorArrowLeft : PE_IndicatorArrowRight);
    return QProxyStyle::standardIcon(which, option, widget);
}

void NativeStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                              const QWidget* widget) const {
    if (element == CE_ToolBar && baseStyle()->inherits("QFusionStyle"))
        DrawToolbar(*painter, *option);
    else
        QProxyStyle::drawControl(element, option, painter, widget);
}

int NativeStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                           QStyleHintReturn* more) const {
    if (hint == SH_DialogButtonLayout)
        return kWindowsVariant ? QDialogButtonBox::WinLayout : QDialogButtonBox::MacLayout;
    return QProxyStyle::styleHint(hint, option, widget, more);
}
