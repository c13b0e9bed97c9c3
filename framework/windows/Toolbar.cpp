#include "framework/windows/Toolbar.h"

#include "framework/threads/ExceptionBoundary.h"
#include "framework/windows/Native.h"
#include "framework/windows/NativeGraphics.h"

#include <QToolBar>
#include <QToolButton>

namespace {

constexpr int kIconSize = 32;

} // namespace

void Toolbar::MakeWidget(NativeControl& native) {
    auto* const window = static_cast<QMainWindow*>(native.parent->window());
    auto* const bar = new QToolBar(window);
    bar->setMovable(false);
    bar->setFloatable(false);
    bar->setIconSize(QSize(kIconSize, kIconSize));
    bar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    bar->setFont(SystemFont(true, false));
    window->addToolBar(bar);
    native.widget = bar;
}

void Toolbar::Append(const Ref<ToolButton>& item) {
    auto* const bar = WidgetOf<QToolBar>(*this);
    if (item->Style == ToolStyle::FlexibleSpace) {
        auto* const gap = new QWidget(bar);
        gap->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
        bar->addWidget(gap);
        return;
    }
    QAction* const action = bar->addAction(ToCaption(item->Caption));
    if (!item->Icon.IsNil())
        action->setIcon(IconOf(item->Icon));
    QWidget* const button = bar->widgetForAction(action);
    button->setToolTip(QString()); // on the button: an action without a tool tip of its own gives its text
    button->setFocusPolicy(Qt::TabFocus);
    button->setAccessibleName(ToScreen(item->Caption));
    QObject::connect(action, &QAction::triggered, bar, [this, item] {
        ExceptionBoundary::Run("toolbar", [self = Self(this), &item] { self->Event_Action(item); });
    });
}
