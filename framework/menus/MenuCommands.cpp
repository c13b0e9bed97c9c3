#include "framework/menus/MenuCommands.h"

#include "framework/app/RunningApplication.h"
#include "framework/base/EventEdge.h"
#include "framework/menus/MenuBar.h"
#include "framework/windows/OpenWindows.h"
#include "framework/windows/Window.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QWindow>

#include <array>

namespace {

struct EditCommand {
    MenuItem::Role role;
    bool changesText;
    void (*run)(QLineEdit&);
};

void DeleteSelection(QLineEdit& field) {
    if (field.hasSelectedText())
        field.del();
}

constexpr std::array kEditCommands{
    EditCommand{MenuItem::Role::Cut, true, [](QLineEdit& field) { field.cut(); }},
    EditCommand{MenuItem::Role::Copy, false, [](QLineEdit& field) { field.copy(); }},
    EditCommand{MenuItem::Role::Paste, true, [](QLineEdit& field) { field.paste(); }},
    EditCommand{MenuItem::Role::Clear, true, DeleteSelection},
    EditCommand{MenuItem::Role::SelectAll, false, [](QLineEdit& field) { field.selectAll(); }},
};

const EditCommand* EditCommandOf(const MenuItem& item) {
    for (const EditCommand& command : kEditCommands) {
        if (item.Is(command.role))
            return &command;
    }
    return nullptr;
}

QLineEdit* FocusedField() {
    QWidget* const focused = QApplication::focusWidget();
    const auto* const box = qobject_cast<QComboBox*>(focused);
    return box != nullptr ? box->lineEdit() : qobject_cast<QLineEdit*>(focused);
}

} // namespace

bool CommandCanRun(const MenuItem& item) {
    if (const EditCommand* const command = EditCommandOf(item)) {
        const QLineEdit* const field = FocusedField();
        return field != nullptr && (!command->changesText || !field->isReadOnly());
    }
    if (QApplication::activeModalWidget() != nullptr)
        return false; // until the user has answered it, a dialog keeps everything else waiting
    if (item.Is(MenuItem::Role::Quit))
        return true;
    const Ref<Window> front = OpenWindows::InFront();
    return (!front.IsNil() && front->MenuHandlers().Has(item.Name())) ||
           (!RunningApplication().IsNil() && RunningApplication()->MenuHandlers().Has(item.Name()));
}

void RunCommand(const MenuItem& item) {
    if (const EditCommand* const command = EditCommandOf(item)) {
        if (QLineEdit* const field = FocusedField())
            command->run(*field);
        return;
    }
    if (!CommandCanRun(item))
        return;
    EventEdge::Run("menu command", [&item] {
        const Ref<Window> front = OpenWindows::InFront();
        if (item.Is(MenuItem::Role::Quit))
            Quit(0);
        else if (front.IsNil() || !front->MenuHandlers().Run(item.Name()))
            RunningApplication()->MenuHandlers().Run(item.Name());
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
