#include "tests/program/Program.h"

namespace {

// List and bottom strip. Above them lies what the system adds: menu bar and toolbar.
constexpr int kContentHeight = 302;

} // namespace

WindowId Program::MainWindow() const {
    std::set<WindowId> windows;
    Await("a main window", [&] {
        windows = desktop_.WindowsOf(*this);
        return !windows.empty();
    });
    return *windows.begin();
}

WindowId Program::OnlyWindow() const {
    WindowId window = 0;
    Await("one window, which is in front", [&] {
        window = desktop_.ActiveWindow();
        return desktop_.WindowsOf(*this) == std::set{window};
    });
    return window;
}

WindowId Program::Dialog() const {
    WindowId dialog = 0;
    Await("a dialog", [&] {
        dialog = desktop_.ActiveWindow();
        const std::set<WindowId> windows = desktop_.WindowsOf(*this);
        return windows.contains(dialog) && dialog != *windows.begin();
    });
    return dialog;
}

void Program::Answer(const Words& keys) const {
    const WindowId dialog = Dialog();
    desktop_.Press(keys);
    Await("the end of a dialog", [&] { return !desktop_.WindowsOf(*this).contains(dialog); });
}

void Program::CloseMainWindow() const {
    OnlyWindow();
    desktop_.Press({"alt+F4"});
}

void Program::PointAt(const Place& place) const {
    const WindowId window = MainWindow();
    const Desktop::Size size = desktop_.SizeOf(window);
    const int x = place.x < 0 ? size.width + place.x : place.x;
    const int y = size.height - kContentHeight + place.y;
    desktop_.Do({"mousemove", "--window", std::to_string(window), std::to_string(x), std::to_string(y)});
}

void Program::Click(const Place& place) const {
    PointAt(place);
    desktop_.Do({"click", "1"});
}
