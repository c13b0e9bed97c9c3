#pragma once

#include "tests/program/Desktop.h"

#include <utility>

// One run of the program on a desktop.
class Program : public Process {
public:
    Program(const Desktop& desktop, const Words& command, const Setting& setting)
        : Process(command, setting), desktop_(desktop) {}

    // Waits until the program has just one window, and that is in front.
    WindowId OnlyWindow() const {
        WindowId window = 0;
        Await("one window, which is in front", [&] {
            window = desktop_.ActiveWindow();
            return desktop_.WindowsOf(*this) == std::set{window};
        });
        return window;
    }

    // Waits until another window of the program than the main one is in front.
    WindowId Dialog() const {
        WindowId dialog = 0;
        Await("a dialog", [&] {
            dialog = desktop_.ActiveWindow();
            const std::set<WindowId> windows = desktop_.WindowsOf(*this);
            return windows.contains(dialog) && dialog != *windows.begin();
        });
        return dialog;
    }

    // Waits for a dialog, presses the keys in it and waits until it has gone.
    void Answer(const Words& keys) const {
        const WindowId dialog = Dialog();
        desktop_.Press(keys);
        Await("the end of a dialog", [&] { return !desktop_.WindowsOf(*this).contains(dialog); });
    }

    // Presses keys in the only window each of which opens a menu, in place of the last one. A key that comes while a
    // menu closes is lost with it, so the next one waits.
    void OpenMenus(const Words& keys) const {
        WindowId last = OnlyWindow();
        for (const std::string& key : keys) {
            desktop_.Press({key});
            Await("a menu", [&] {
                const std::set<WindowId> windows = desktop_.WindowsOf(*this);
                return windows.size() == 2 && std::exchange(last, *windows.rbegin()) != *windows.rbegin();
            });
        }
    }

    // What its close button does.
    void CloseMainWindow() const {
        OnlyWindow();
        desktop_.Press({"alt+F4"});
    }

private:
    const Desktop& desktop_;
};
