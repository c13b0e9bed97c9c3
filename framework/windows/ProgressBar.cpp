#include "framework/windows/ProgressBar.h"

#include "framework/windows/Native.h"

#include <QProgressBar>

#include <algorithm>

void ProgressBar::SetValue(int32_t value) {
    if (value_.exchange(value) != value)
        RequestUpdate();
}

void ProgressBar::SetMaximum(int32_t maximum) {
    if (maximum_.exchange(maximum) != maximum)
        RequestUpdate();
}

void ProgressBar::MakeWidget(NativeControl& native) {
    auto* const bar = new QProgressBar(native.parent);
    bar->setTextVisible(false);
    bar->setRange(0, Maximum());
    bar->setValue(Value());
    // The canvas beneath gets the pointer's moves and the drops.
    bar->setAttribute(Qt::WA_TransparentForMouseEvents);
    native.widget = bar;
}

void ProgressBar::UpdateScreen() {
    Control::UpdateScreen();
    if (Native() == nullptr || !Native()->widget)
        return;
    auto* const bar = static_cast<QProgressBar*>(Native()->widget.data());
    const int maximum = std::max(0, Maximum());
    // The toolkit's bar would paint itself at each change, and what lies beneath along with it.
    bar->setUpdatesEnabled(false);
    bar->setRange(0, maximum);
    if (maximum > 0)
        bar->setValue(std::clamp(Value(), 0, maximum));
    bar->setUpdatesEnabled(true);
    UncoverBeneath();
}
