#include "tests/program/Program.h"

#include <algorithm>

namespace {

// List and bottom strip of a window that nobody has resized. Above them lies what the system adds: menu bar and
// toolbar.
constexpr int kContentHeight = 302;
constexpr int kRowHeight = 50;
constexpr int kStopFromRight = 23;
constexpr int kStopMiddle = 26;
constexpr int kToolMiddle = 35;

} // namespace

Program::Program(const Desktop& desktop, const Words& command, const Process::Setting& setting)
    : desktop_(desktop), process_(command, setting) {}

WindowId Program::MainWindow() {
    const auto isOlder = [](const WindowId& one, const WindowId& other) { return std::stoul(one) < std::stoul(other); };
    process_.Await("a main window", [&] {
        const std::vector<WindowId> windows = desktop_.WindowsOf(process_);
        if (main_.empty() && !windows.empty())
            main_ = *std::min_element(windows.begin(), windows.end(), isOlder);
        return !main_.empty();
    });
    return main_;
}

WindowId Program::Dialog() {
    const WindowId main = MainWindow();
    WindowId dialog;
    process_.Await("a dialog", [&] {
        const std::vector<WindowId> windows = desktop_.WindowsOf(process_);
        dialog = desktop_.ActiveWindow();
        return dialog != main && std::find(windows.begin(), windows.end(), dialog) != windows.end();
    });
    return dialog;
}

void Program::Answer(const Words& keys) {
    const WindowId dialog = Dialog();
    desktop_.Press(keys);
    Await("the end of a dialog", [&] {
        const std::vector<WindowId> windows = desktop_.WindowsOf(process_);
        return std::find(windows.begin(), windows.end(), dialog) == windows.end();
    });
}

WindowId Program::OnlyWindow() {
    WindowId window;
    process_.Await("one window, which is in front", [&] {
        window = desktop_.ActiveWindow();
        return desktop_.WindowsOf(process_) == std::vector{window};
    });
    return window;
}

void Program::CloseMainWindow() {
    OnlyWindow();
    desktop_.Press({"alt+F4"});
}

void Program::ClickTool(int fromEdge) {
    const Desktop::Size size = desktop_.SizeOf(MainWindow());
    desktop_.ClickAt(main_, fromEdge < 0 ? size.width + fromEdge : fromEdge,
                     size.height - kContentHeight - kToolMiddle);
}

void Program::ClickStop(int row) {
    const Desktop::Size size = desktop_.SizeOf(MainWindow());
    desktop_.ClickAt(main_, size.width - kStopFromRight, size.height - kContentHeight + kRowHeight * row + kStopMiddle);
}
