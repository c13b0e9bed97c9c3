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
    if (QWidget* const widget = WidgetOf(*this))
        widget->setEnabled(enabled);
}

void Control::SetVisible(bool visible) {
    visible_ = visible;
    QWidget* const widget = WidgetOf(*this);
    if (widget == nullptr)
        return;
    if (!visible)
        widget->clearFocus(); // which Qt would hand to the next control, for which no key is meant
    widget->setVisible(visible);
}

void Control::SetAccessibleName(const std::string& name) {
    accessibleName_ = name;
    if (QWidget* const widget = WidgetOf(*this))
        widget->setAccessibleName(ToScreen(name));
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
    if (QWidget* const widget = WidgetOf(*this)) {
        widget->hide();
        DeleteLater(*widget, Self(this));
    }
    native_.reset();
}

void Control::Refresh(bool /*eraseBackground*/) {
    refresh_ = true;
    RequestUpdate();
}

void Control::UpdateScreen() {
    ApplyPlace();
    QWidget* const widget = WidgetOf(*this);
    if (refresh_.exchange(false) && widget != nullptr)
        widget->update();
}

void Control::Attach(::Window& window, const ControlLayout& layout) {
    layout_ = layout;
    left_ = layout.Left;
    top_ = layout.Top;
    width_ = layout.Width;
    height_ = layout.Height;
    window_ = window.weak_from_this();

    native_ = std::make_unique<NativeControl>();
    native_->parent = layout.Within == nullptr ? window.Native().content : WidgetOf(*layout.Within);
    MakeWidget(*native_);
    SetAccessibleName(accessibleName_);
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
    QWidget* const widget = WidgetOf(*this);
    const QRect place(left_, top_, width_, height_);
    if (widget == nullptr || widget->geometry() == place)
        return;
    RepaintBeneath();
    widget->setGeometry(place);
}

void Control::RepaintBeneath() {
    const Ref<::Window> window = Window();
    if (!window.IsNil())
        window->RepaintBeneath(*this);
}
