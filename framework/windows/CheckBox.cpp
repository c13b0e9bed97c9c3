#include "framework/windows/CheckBox.h"

#include "framework/threads/ExceptionBoundary.h"
#include "framework/windows/Native.h"

#include <QCheckBox>

void CheckBox::SetCaption(const std::string& caption) {
    caption_ = caption;
    if (auto* const box = WidgetOf<QCheckBox>(*this))
        box->setText(ToCaption(caption));
}

void CheckBox::SetValue(bool value) {
    if (auto* const box = WidgetOf<QCheckBox>(*this))
        box->setChecked(value);
    else
        value_ = value;
}

void CheckBox::MakeWidget(NativeControl& native) {
    auto* const box = new QCheckBox(ToCaption(caption_), native.parent);
    box->setFont(SystemFont(false, false));
    box->setChecked(value_);
    QObject::connect(box, &QCheckBox::toggled, box, [this](bool checked) {
        value_ = checked;
        ExceptionBoundary::Run("check box", [self = Self(this)] {
            if (self->Action)
                self->Action();
        });
    });
    native.widget = box;
}
