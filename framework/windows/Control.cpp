#include "framework/windows/Control.h"

#include "framework/threads/MainThread.h"
#include "framework/windows/Native.h"
#include "framework/windows/Window.h"

Control::Control() = default;

Control::~Control() {
    // The last reference may go on a worker; the widget belongs to the main thread.
    if (native_ && !IsMainThread())
        PostToMainThread([native = std::shared_ptr<NativeControl>(std::move(native_))] { delete native->widget; });
}

void Control::SetLeft(int32_t left) {
    if (left_.exchange(left) != left)
        RequestUpdate();
}

void Control::SetTop(int32_t top) {
    if (top_.exchange(top) != top)
        RequestUpdate();
}

void Control::SetWidth(int32_t width) {
    if (width_.exchange(width) != width)
        RequestUpdate();
}

void Control::SetHeight(int32_t height) {
    if (height_.exchange(height) != height)
        RequestUpdate();
}

void Control::SetEnabled(bool enabled) {
    enabled_ = enabled;
    if (native_ && native_->widget)
        native_->widget->setEnabled(enabled);
}

void Control::SetVisible(bool visible) {
    visible_ = visible;
    if (!native_ || !native_->widget)
        return;
    if (!visible)
        native_->widget->clearFocus(); // which Qt would hand to the next control, for which no key is meant
    native_->widget->setVisible(visible);
}

void Control::SetAccessibleName(const std::string& name) {
    accessibleName_ = name;
    if (native_ && native_->widget)
        native_->widget->setAccessibleName(ToScreen(name));
}

Ref<Window> Control::Window() const {
    return Ref<::Window>(std::static_pointer_cast<::Window>(window_.lock()));
}

void Control::Event_Open() {
    if (Open)
        Open();
}

void Control::Close() {
    const Ref<::Window> window = Window();
    if (!window.IsNil())
        window->Remove(Self(this));
    window_.reset();
    if (native_ && native_->widget) {
        native_->widget->hide();
        DeleteLater(*native_->widget, Self(this));
    }
    native_.reset();
}

void Control::Refresh(bool /*eraseBackground*/) {
    refresh_ = true;
    RequestUpdate();
}

void Control::UpdateScreen() {
    ApplyPlace();
    if (refresh_.exchange(false) && native_ && native_->widget)
        native_->widget->update();
}

void Control::Attach(::Window& window, const ControlLayout& layout) {
    layout_ = layout;
    left_ = layout.Left;
    top_ = layout.Top;
    width_ = layout.Width;
    height_ = layout.Height;
    window_ = window.weak_from_this();

    native_ = std::make_unique<NativeControl>();
    native_->parent = layout.Within == nullptr ? window.Native().content : layout.Within->native_->widget;
    MakeWidget(*native_);
    native_->widget->setAccessibleName(ToScreen(accessibleName_));
    SetEnabled(enabled_ && layout.Enabled);
    ApplyPlace();
    SetVisible(visible_ && layout.Visible);
}

void Control::WindowResized(int32_t byWidth, int32_t byHeight) {
    if (layout_.LockRight)
        (layout_.LockLeft ? width_ : left_) += byWidth;
    if (layout_.LockBottom)
        (layout_.LockTop ? height_ : top_) += byHeight;
    ApplyPlace();
}

void Control::ApplyPlace() {
    if (!native_ || !native_->widget)
        return;
    const QRect place(left_, top_, width_, height_);
    if (native_->widget->geometry() == place)
        return;
    RepaintBeneath();
    native_->widget->setGeometry(place);
}

void Control::RepaintBeneath() {
    const Ref<::Window> window = Window();
    if (!window.IsNil())
        window->RepaintBeneath(*this);
}
