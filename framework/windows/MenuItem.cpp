#include "framework/windows/MenuItem.h"

#include "framework/app/Application.h"
#include "framework/text/Text.h"
#include "framework/threads/ExceptionBoundary.h"
#include "framework/windows/MenuBar.h"
#include "framework/windows/MenuCommands.h"
#include "framework/windows/Native.h"
#include "framework/windows/NativeMenu.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMenuBar>

#include <algorithm>

namespace {

constexpr const char* kSeparator = "-";

QAction::MenuRole PlaceOf(MenuItem::Role role) {
    switch (role) {
    case MenuItem::Role::Quit:
        return QAction::QuitRole;
    case MenuItem::Role::Preferences:
        return QAction::PreferencesRole;
    case MenuItem::Role::About:
        return QAction::AboutRole;
    default:
        return QAction::NoRole;
    }
}

// An Escape that closes a menu gives the focus back to the control that had it. Qt's own would leave it in the menu
// bar.
class MenuWidget : public QMenu {
public:
    using QMenu::QMenu;

protected:
    void keyPressEvent(QKeyEvent* event) override {
        QMenu::keyPressEvent(event);
        auto* const bar = qobject_cast<QMenuBar*>(QApplication::focusWidget());
        if (event->key() != Qt::Key_Escape || bar == nullptr)
            return;
        QKeyEvent leaving(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QApplication::sendEvent(bar, &leaving);
        bar->clearFocus(); // where no control had it
    }
};

} // namespace

MenuItem::MenuItem(std::string name, const std::string& text, const std::string& keyboardShortcut, Role role)
    : name_(std::move(name)),
      keyboardShortcut_(keyboardShortcut),
      role_(role),
      native_(std::make_unique<NativeMenuItem>()) {
    QAction& action = native_->action;
    action.setObjectName(QString::fromStdString(name_));
    action.setMenuRole(PlaceOf(role));
    if (!keyboardShortcut_.empty()) {
        action.setShortcut(QKeySequence(QString::fromStdString(Replace(keyboardShortcut_, "Cmd", "Ctrl"))));
        action.setShortcutContext(Qt::ApplicationShortcut);
    }
    QObject::connect(&action, &QAction::triggered, &action, [this] { RunCommand(*this); });
    SetText(text);
}

MenuItem::~MenuItem() = default;

void MenuItem::SetText(const std::string& text) {
    text_ = text;
    native_->action.setSeparator(IsSeparator());
    if (!IsSeparator())
        native_->action.setText(ToCaption(text));
    if (bar_ != nullptr)
        bar_->UpdateTitles();
}

bool MenuItem::IsSeparator() const {
    return text_ == kSeparator;
}

void MenuItem::SetVisible(bool visible) {
    native_->action.setVisible(visible);
}

bool MenuItem::Enabled() const {
    return native_->action.isEnabled();
}

void MenuItem::Append(const Ref<MenuItem>& item) {
    if (!native_->menu) {
        native_->menu = std::make_unique<MenuWidget>();
        QObject::connect(native_->menu.get(), &QMenu::aboutToShow, native_->menu.get(), [this] {
            ExceptionBoundary::Run("enable menu items", [] { RunningApplication()->Event_EnableMenuItems(); });
            UpdateEnabled();
        });
    }
    native_->menu->addAction(&item->native_->action);
    items_.push_back(item);
}

Ref<MenuItem> MenuItem::Find(const std::string& name) {
    if (name_ == name)
        return Self(this);
    for (const Ref<MenuItem>& item : items_) {
        const Ref<MenuItem> found = item->Find(name);
        if (!found.IsNil())
            return found;
    }
    return nullptr;
}

void MenuItem::UpdateEnabled() {
    for (const Ref<MenuItem>& item : items_)
        item->UpdateEnabled();
    if (items_.empty() && !IsSeparator())
        native_->action.setEnabled(CommandCanRun(*this));
}
