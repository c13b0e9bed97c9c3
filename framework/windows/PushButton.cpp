#include "framework/windows/PushButton.h"

#include "framework/threads/ExceptionBoundary.h"
#include "framework/windows/Native.h"

#include <QPushButton>

void PushButton::SetCaption(const std::string& caption) {
    caption_ = caption;
    if (auto* const button = WidgetOf<QPushButton>(*this))
        button->setText(ToCaption(caption));
}

void PushButton::Push() {
    if (Enabled())
        Event_Action();
}

void PushButton::MakeWidget(NativeControl& native) {
    auto* const button = new QPushButton(native.parent);
    button->setText(ToCaption(caption_));
    button->setFont(SystemFont(false, false));
    button->setAutoDefault(false);
    button->setDefault(Default);
    QObject::connect(button, &QPushButton::clicked, button,
                     [this] { ExceptionBoundary::Run("button", [self = Self(this)] { self->Event_Action(); }); });
    native.widget = button;
}
