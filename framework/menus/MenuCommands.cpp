#include "framework/menus/MenuCommands.h"

#include "framework/app/RunningApplication.h"
#include "framework/base/EventEdge.h"
#include "framework/menus/MenuBar.h"
#include "framework/windows/Native.h"
#include "framework/windows/Window.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QWindow>

#include <algorithm>
#include <array>

namespace {

constexpr const char* kQuitItem = "FileQuit";

struct EditCommand {
    const char* itemName;
    bool changesText;
    void (*run)(QLineEdit&);
};

void DeleteSelection(QLineEdit& field) {
    if (field.hasSelectedText())
        field.del();
}

constexpr std::array kEditCommands{
    EditCommand{"EditCut", true, [](QLineEdit& field) { field.cut(); }},
    EditCommand{"EditCopy", false, [](QLineEdit& field) { field.copy(); }},
    EditCommand{"EditPaste", true, [](QLineEdit& field) { field.paste(); }},
    EditCommand{"EditClear", true, DeleteSelection},
    EditCommand{"EditSelectAll", false, [](QLineEdit& field) { field.selectAll(); }},
};

const EditCommand* EditCommandOf(const std::string& itemName) {
    for (const EditCommand& command : kEditCommands) {
        if (itemName == command.itemName)
            return &command;
    }
    return nullptr;
}

QLineEdit* FocusedField() {
    QWidget* const focused = QApplication::focusWidget();
    const auto* const box = qobject_cast<QComboBox*>(focused);
    return box != nullptr ? box->lineEdit() : qobject_cast<QLineEdit*>(focused);
}

Ref<Window> WindowInFront() {
    const QWidget* const active = QApplication::activeWindow();
    const auto windows = Window::All();
    const auto front = std::find_if(windows.begin(), windows.end(), [active](const Ref<Window>& window) {
        return active != nullptr && window->Native().widget == active;
    });
    return front == windows.end() ? nullptr : *front;
}

} // namespace

bool CommandCanRun(const std::string& itemName) {
    if (const EditCommand* const command = EditCommandOf(itemName)) {
        const QLineEdit* const field = FocusedField();
        return field != nullptr && (!command->changesText || !field->isReadOnly());
    }
    if (QApplication::activeModalWidget() != nullptr)
        return false; // until the user has answered it, a dialog keeps everything else waiting
    if (itemName == kQuitItem)
        return true;
    const Ref<Window> front = WindowInFront();
    return (!front.IsNil() && front->MenuHandlers().Has(itemName)) ||
           (!RunningApplication().IsNil() && RunningApplication()->MenuHandlers().Has(itemName));
}

void RunCommand(const std::string& itemName) {
    if (const EditCommand* const command = EditCommandOf(itemName)) {
        if (QLineEdit* const field = FocusedField())
            command->run(*field);
        return;
    }
    if (!CommandCanRun(itemName))
        return;
    EventEdge::Run("menu command", [&itemName] {
        const Ref<Window> front = WindowInFront();
        if (itemName == kQuitItem)
            Quit(0);
        else if (front.IsNil() || !front->MenuHandlers().Run(itemName))
            RunningApplication()->MenuHandlers().Run(itemName);
    });
}

void FollowTheWindowInFront() {
    const auto update = [] {
        if (!Application::MenuBar().IsNil())
            Application::MenuBar()->UpdateEnabled();
    };
    QObject::connect(qApp, &QApplication::focusChanged, qApp, update);
    QObject::connect(qApp, &QGuiApplication::focusWindowChanged, qApp, update);
}
