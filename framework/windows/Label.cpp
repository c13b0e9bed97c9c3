#include "framework/windows/Label.h"

#include "framework/windows/Native.h"

#include <QLabel>

std::string Label::Text() const {
    const std::lock_guard lock(mutex_);
    return text_;
}

void Label::SetText(const std::string& text) {
    {
        const std::lock_guard lock(mutex_);
        text_ = text;
    }
    RequestUpdate();
}

void Label::MakeWidget(NativeControl& native) {
    static constexpr Qt::AlignmentFlag kAlignments[] = {Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignRight};
    auto* const label = new QLabel(native.parent);
    label->setTextFormat(Qt::PlainText);
    label->setFont(SystemFont(TextFont == "SmallSystem", Bold));
    label->setAlignment(Qt::AlignVCenter | kAlignments[TextAlign]);
    label->setText(ToScreen(Text()));
    native.widget = label;
}

void Label::UpdateScreen() {
    Control::UpdateScreen();
    if (Native() != nullptr && Native()->widget)
        static_cast<QLabel*>(Native()->widget.data())->setText(ToScreen(Text()));
}
