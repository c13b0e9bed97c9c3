#include "framework/windows/MenuCommands.h"

#include "framework/app/Application.h"
#include "framework/threads/ExceptionBoundary.h"
#include "framework/windows/MenuBar.h"
#include "framework/windows/Window.h"
#include "framework/windows/WindowList.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QTextCursor>
#include <QTextEdit>
#include <QWindow>

#include <array>

namespace {

struct EditCommand {
    MenuItem::Role role;
    bool changesText;
    void (*runInField)(QLineEdit&);
    void (*runInArea)(QTextEdit&);

    template <class Run>
    constexpr EditCommand(MenuItem::Role ofItem, bool changes, Run run)
        : role(ofItem), changesText(changes), runInField(run), runInArea(run) {}
};

void DeleteSelection(QLineEdit& field) {
    if (field.hasSelectedText())
        field.del();
}

void DeleteSelection(QTextEdit& area) {
    area.textCursor().removeSelectedText();
}

constexpr std::array kEditCommands{
    EditCommand{MenuItem::Role::Cut, true, [](auto& text) { text.cut(); }},
    EditCommand{MenuItem::Role::Copy, false, [](auto& text) { text.copy(); }},
    EditCommand{MenuItem::Role::Paste, true, [](auto& text) { text.paste(); }},
    EditCommand{MenuItem::Role::Clear, true, [](auto& text) { DeleteSelection(text); }},
    EditCommand{MenuItem::Role::SelectAll, false, [](auto& text) { text.selectAll(); }},
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

QTextEdit* FocusedArea() {
    return qobject_cast<QTextEdit*>(QApplication::focusWidget());
}

bool CanEdit(const EditCommand& command) {
    if (const QLineEdit* const field = FocusedField())
        return !command.changesText || !field->isReadOnly();
    if (const QTextEdit* const area = FocusedArea())
        return !command.changesText || !area->isReadOnly();
    return false;
}

void Edit(const EditCommand& command) {
    if (QLineEdit* const field = FocusedField())
        command.runInField(*field);
    else if (QTextEdit* const area = FocusedArea())
        command.runInArea(*area);
}

} // namespace

bool CommandCanRun(const MenuItem& item) {
    if (const EditCommand* const command = EditCommandOf(item))
        return CanEdit(*command);
    if (QApplication::activeModalWidget() != nullptr)
        return false; // until the user has answered it, a dialog keeps everything else waiting
    if (item.Is(MenuItem::Role::Quit))
        return true;
    const Ref<Window> front = WindowList::InFront();
    return (!front.IsNil() && front->MenuHandlers().Has(item.Name())) ||
           (!RunningApplication().IsNil() && RunningApplication()->MenuHandlers().Has(item.Name()));
}

void RunCommand(const MenuItem& item) {
    if (const EditCommand* const command = EditCommandOf(item)) {
        Edit(*command);
        return;
    }
    if (!CommandCanRun(item))
        return;
    ExceptionBoundary::Run("menu command", [&item] {
        const Ref<Window> front = WindowList::InFront();
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
