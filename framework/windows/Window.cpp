#include "framework/windows/Window.h"

#include "framework/app/Application.h"
#include "framework/threads/ExceptionBoundary.h"
#include "framework/threads/Yield.h"
#include "framework/windows/Graphics.h"
#include "framework/windows/MenuBar.h"
#include "framework/windows/ModalRun.h"
#include "framework/windows/Native.h"
#include "framework/windows/NativeGraphics.h"
#include "framework/windows/NativeMenu.h"
#include "framework/windows/PushButton.h"
#include "framework/windows/WindowList.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QLayout>
#include <QMenuBar>
#include <QPainter>
#include <QScreen>

#include <algorithm>

namespace {

constexpr int kStagger = 32;
constexpr std::string_view kNoTitle = " "; // for an empty one Qt puts the program's name into the frame

bool IsModal(const WindowLayout& layout) {
    return layout.Frame == WindowFrame::Modal || layout.Frame == WindowFrame::ModalSheet;
}

Qt::WindowFlags FlagsOf(const WindowLayout& layout) {
    const bool dialog = IsModal(layout) || layout.Frame == WindowFrame::Dialog;
    Qt::WindowFlags flags = dialog ? Qt::Dialog : Qt::Window;
    flags |= Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint;
    flags.setFlag(Qt::WindowCloseButtonHint, layout.CloseButton);
    flags.setFlag(Qt::WindowMinimizeButtonHint, layout.MinimizeButton);
    flags.setFlag(Qt::WindowMaximizeButtonHint, layout.MaximizeButton);
    return flags;
}

// Gives the content its size, and the window what its bars need on top of that.
void SizeToLayout(NativeWindow& native, const WindowLayout& layout) {
    native.content->setFixedSize(layout.Width, layout.Height);
    if (!layout.Resizeable) {
        native.widget->layout()->setSizeConstraint(QLayout::SetFixedSize);
        return;
    }
    native.widget->adjustSize();
    native.content->setMinimumSize(layout.MinWidth, layout.MinHeight);
    native.content->setMaximumSize(layout.MaxWidth, layout.MaxHeight);
}

void HoldMenuBar(QMainWindow& window) {
    if (Application::MenuBar().IsNil())
        return;
    window.menuBar()->setAccessibleName(window.windowTitle());
    for (const Ref<MenuItem>& menu : Application::MenuBar()->Menus()) {
        if (menu->Native().menu)
            window.menuBar()->addMenu(menu->Native().menu.get());
    }
}

// Opens the first menu, from where the arrow keys go on. Not every language has letters for mnemonics.
void EnterMenuBar(QMenuBar& bar) {
    if (!bar.actions().isEmpty())
        bar.setActiveAction(bar.actions().constFirst());
}

void CentreOn(QWidget& window, const QRect& area) {
    QRect frame(QPoint(), window.frameSize());
    frame.moveCenter(area.center());
    window.move(frame.topLeft());
}

// A step down from the window in front, which has a frame like it, yet on that one's screen as a whole.
void StepDownFrom(const QWidget& front, QWidget& window) {
    const QRect area = front.screen()->availableGeometry();
    const QSize size = window.size() + front.frameSize() - front.size();
    const QPoint last = area.bottomRight() - QPoint(size.width() - 1, size.height() - 1);
    const QPoint step = front.pos() + QPoint(kStagger, kStagger);
    window.move(std::max(area.left(), std::min(step.x(), last.x())),
                std::max(area.top(), std::min(step.y(), last.y())));
}

} // namespace

void ContentWidget::paintEvent(QPaintEvent*) {
    const NoYield noYield;
    QPainter painter(this);
    if (window_.layout_.HasBackColor)
        painter.fillRect(rect(), QColor(QRgb(window_.layout_.BackColor)));
    Graphics graphics = MakeGraphics(painter);
    ExceptionBoundary::RunRepeated("window paint", [&] { window_.Event_Paint(graphics); });
}

void ContentWidget::resizeEvent(QResizeEvent* event) {
    const QSize grown = event->size() - laidOut_;
    laidOut_ = event->size();
    window_.ContentResized(grown.width(), grown.height());
}

void WindowWidget::changeEvent(QEvent* event) {
    static int64_t cameToFront = 0;
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        window_.inFrontSince_ = ++cameToFront;
    QMainWindow::changeEvent(event);
}

void WindowWidget::closeEvent(QCloseEvent* event) {
    event->ignore(); // the window goes when Close says so
    if (!window_.layout_.CloseButton)
        return; // left by its own buttons, also where the desktop has another way to close windows
    ExceptionBoundary::Run("window close", [window = Self(&window_)] { window->Close(); });
}

// What has the focus shows it from the beginning: Qt would wait for the first Tab.
void WindowWidget::showEvent(QShowEvent*) {
    setAttribute(Qt::WA_KeyboardFocusChange);
}

void WindowWidget::keyPressEvent(QKeyEvent* event) {
    const bool plain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    const bool confirms = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (plain && (confirms || event->key() == Qt::Key_Escape))
        Answer(confirms);
    else if (event->key() == Qt::Key_F10 && window_.layout_.HoldsMenuBar)
        EnterMenuBar(*menuBar());
    else
        QMainWindow::keyPressEvent(event);
}

// Return presses the button that has the focus, or else the default one. A check box is none in this.
void WindowWidget::Answer(bool confirms) {
    auto* const focused = qobject_cast<QAbstractButton*>(focusWidget());
    if (confirms && focused != nullptr && !focused->isCheckable())
        focused->click();
    else if (!window_.PressButton(!confirms) && !confirms && !window_.layout_.HoldsMenuBar)
        close();
}

Window::Window() : native_(std::make_unique<NativeWindow>()) {}

Window::~Window() = default;

void Window::Make() {
    layout_ = Layout();
    native_->widget = new WindowWidget(*this);
    native_->content = new ContentWidget(*this, QSize(layout_.Width, layout_.Height));
    native_->widget->setCentralWidget(native_->content);
    native_->widget->setWindowFlags(FlagsOf(layout_));
    native_->widget->setWindowModality(IsModal(layout_) ? Qt::ApplicationModal : Qt::NonModal);
    native_->widget->setContextMenuPolicy(Qt::NoContextMenu);
    native_->widget->setFont(SystemFont(false, false));
    SetTitle(layout_.Title);
    native_->content->resize(layout_.Width, layout_.Height);
    WindowList::Add(Self(this));

    if (layout_.HoldsMenuBar)
        HoldMenuBar(*native_->widget);
    CreateControls();
    AddMenuHandlers();
    SetTabOrder();
    const std::vector<Ref<Control>> controls = controls_;
    for (const Ref<Control>& control : controls)
        control->Event_Open();
    Event_Open();
    if (native_->widget)
        SizeToLayout(*native_, layout_);
}

void Window::Show() {
    if (!native_->widget)
        return;
    if (native_->widget->isVisible()) {
        BringToFront();
        return;
    }
    native_->widget->ensurePolished();
    if (!layout_.Resizeable)
        native_->widget->adjustSize();
    if (layout_.Placement == WindowPlacement::CentreOfScreen)
        CentreOn(*native_->widget, native_->widget->screen()->availableGeometry());
    else if (layout_.Placement == WindowPlacement::Stagger && QApplication::activeWindow() != nullptr)
        StepDownFrom(*QApplication::activeWindow(), *native_->widget);
    native_->widget->show();
}

void Window::ShowWithin(const Ref<Window>& parent, int32_t /*facing*/) {
    if (!native_->widget || native_->widget->isVisible())
        return;
    native_->widget->setParent(parent->native_->widget, native_->widget->windowFlags());
    native_->widget->adjustSize();
    CentreOn(*native_->widget, parent->native_->widget->frameGeometry());
    native_->widget->show();
}

void Window::ShowModal() {
    const Ref<Window> self = Self(this);
    Show();
    if (!native_->widget || !native_->widget->isVisible())
        return;
    const ModalRun modalRun;
    QEventLoop loop;
    native_->modalRuns.push_back(&loop);
    loop.exec(QEventLoop::DialogExec);
    native_->modalRuns.pop_back();
}

void Window::ShowModalWithin(const Ref<Window>& parent) {
    ShowWithin(parent, -1);
    ShowModal();
}

void Window::Hide() {
    if (native_->widget)
        native_->widget->hide();
    native_->EndModalRuns();
}

void Window::Close() {
    if (closed_ || asking_ || RefusesClose(false))
        return;
    FinishClose();
}

bool Window::RefusesClose(bool quitting) {
    asking_ = true;
    bool refuses = false; // a question that fails does not keep the window open for ever
    ExceptionBoundary::Run("window close", [&] { refuses = Event_CancelClose(quitting); });
    asking_ = false;
    return refuses;
}

void Window::FinishClose() {
    const Ref<Window> self = Self(this);
    if (closed_)
        return;
    closed_ = true;
    Hide();
    ExceptionBoundary::Run("window close", [this] { Event_Close(); });
    WindowList::Remove(self);
    if (native_->widget)
        DeleteLater(*native_->widget, self);
}

void Window::BringToFront() {
    if (!native_->widget)
        return;
    Raise();
    native_->widget->activateWindow();
}

// The one with the menu bar is the main window.
bool Window::ComesForward() const {
    return native_->widget && native_->widget->isVisible() && (layout_.HoldsMenuBar || !native_->widget->isMinimized());
}

void Window::Raise() {
    native_->widget->setWindowState(native_->widget->windowState() & ~Qt::WindowMinimized);
    native_->widget->raise();
}

void Window::SetAccessibleName(const std::string& name) {
    if (native_->widget)
        native_->widget->setAccessibleName(ToScreen(name));
}

void Window::SetTitle(const std::string& title) {
    layout_.Title = title;
    if (native_->widget)
        native_->widget->setWindowTitle(ToScreen(title.empty() ? kNoTitle : title));
}

int32_t Window::Width() const {
    return native_->content ? native_->content->width() : layout_.Width;
}

int32_t Window::Height() const {
    return native_->content ? native_->content->height() : layout_.Height;
}

void Window::Refresh(bool /*eraseBackground*/) {
    RequestUpdate();
}

void Window::UpdateScreen() {
    if (native_->content)
        native_->content->update();
    for (const Ref<Control>& control : controls_)
        control->RepaintUnderneath();
}

void Window::AddControl(const Ref<Control>& control, const ControlLayout& layout) {
    control->Attach(*this, layout);
    controls_.push_back(control);
}

void Window::Remove(const Ref<Control>& control) {
    RepaintBeneath(*control);
    std::erase(controls_, control);
}

void Window::RepaintBeneath(const Control& above) {
    for (const Ref<Control>& control : controls_) {
        if (control.Get() != &above)
            control->RepaintUnderneath();
    }
}

void Window::ContentResized(int32_t byWidth, int32_t byHeight) {
    for (const Ref<Control>& control : controls_)
        control->WindowResized(byWidth, byHeight);
}

void Window::SetTabOrder() {
    std::vector<Ref<Control>> stops;
    std::copy_if(controls_.begin(), controls_.end(), std::back_inserter(stops),
                 [](const Ref<Control>& control) { return control->layout_.TabIndex >= 0; });
    std::stable_sort(stops.begin(), stops.end(), [](const Ref<Control>& one, const Ref<Control>& other) {
        return one->layout_.TabIndex < other->layout_.TabIndex;
    });
    QWidget* focused = native_->widget; // where there are links and tools only, which Tab alone reaches
    QWidget* last = nullptr;
    for (const Ref<Control>& stop : stops) {
        QWidget* const widget = WidgetOf(*stop);
        if (widget->focusPolicy() == Qt::NoFocus)
            continue;
        if (focused == native_->widget && widget->focusPolicy() != Qt::TabFocus)
            focused = widget;
        if (last != nullptr)
            QWidget::setTabOrder(last, widget);
        last = widget;
    }
    focused->setFocus();
}

bool Window::PressButton(bool cancel) {
    for (const Ref<Control>& control : controls_) {
        auto* const button = dynamic_cast<PushButton*>(control.Get());
        if (button != nullptr && (cancel ? button->Cancel : button->Default) && button->Enabled() &&
            button->Visible()) {
            const Ref<PushButton> held = Self(button);
            ExceptionBoundary::Run("button", [&held] { held->Push(); });
            return true;
        }
    }
    return false;
}
