#include "framework/windows/ScrollBar.h"

#include "framework/windows/Native.h"

#include <QScrollBar>

void ScrollBar::MakeWidget(NativeControl& native) {
    auto* const bar = new QScrollBar(Qt::Vertical, native.parent);
    bar->setRange(Minimum, Maximum);
    bar->setValue(Value);
    bar->setSingleStep(LineStep);
    bar->setPageStep(PageStep);
    native.widget = bar;
}
