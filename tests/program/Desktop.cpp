#include "tests/program/Desktop.h"

#include <cstdlib>

namespace {

namespace fs = std::filesystem;

constexpr const char* kFilePrefix = "file://";

constexpr const char* kWindowManagerSettings = R"(<?xml version="1.0"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
  <focus><focusNew>yes</focusNew></focus>
  <keyboard><keybind key="A-F4"><action name="Close"/></keybind></keyboard>
</openbox_config>
)";

constexpr const char* kOpenerEntry = R"([Desktop Entry]
Type=Application
Name=Opener
Exec="@" %u
NoDisplay=true
)";

// An archive is known by its name only where the machine has a table of file types.
constexpr const char* kOpenerDefaults = R"([Default Applications]
application/zip=opener.desktop
application/octet-stream=opener.desktop
inode/directory=opener.desktop
x-scheme-handler/https=opener.desktop
)";

// The path in a file's address, as the bytes that it stands for. Other addresses stay as they are.
std::string PathOf(const std::string& address) {
    if (!address.starts_with(kFilePrefix))
        return address;
    std::string path;
    for (std::size_t i = std::string(kFilePrefix).size(); i < address.size(); ++i) {
        if (address[i] == '%') {
            path += static_cast<char>(std::stoi(address.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else {
            path += address[i];
        }
    }
    return path;
}

std::vector<std::string> PathsIn(const std::string& log) {
    std::vector<std::string> paths;
    for (const std::string& line : Lines(log))
        paths.push_back(PathOf(line));
    return paths;
}

std::string Replaced(std::string text, const std::string& word) {
    return text.replace(text.find('@'), 1, word);
}

} // namespace

Desktop::Desktop(const fs::path& folder) : folder_(folder) {
    AdoptOrphans();
    for (const char* const name : {"home/.config", "home/.local/share/applications", "home/.cache", "run", "logs"})
        fs::create_directories(folder_ / name);
    fs::permissions(folder_ / "run", fs::perms::owner_all);
    // Only what is named here: a variable of the tester's own desktop would lead back to it.
    environment_ = {{"HOME", folder_ / "home"},
                    {"XDG_CONFIG_HOME", Configuration()},
                    {"XDG_DATA_HOME", folder_ / "home/.local/share"},
                    {"XDG_CACHE_HOME", folder_ / "home/.cache"},
                    {"XDG_RUNTIME_DIR", folder_ / "run"},
                    {"LC_ALL", "C.UTF-8"}};
    for (const char* const name : {"PATH", "ASAN_OPTIONS", "UBSAN_OPTIONS", "LSAN_OPTIONS", "TSAN_OPTIONS"}) {
        if (const char* const value = std::getenv(name))
            environment_[name] = value;
    }
    WriteOpener();
    StartDisplay();
    StartBus();
    StartWindowManager();
    fileManager_ = &Pretend({"file-manager"});
}

Desktop::~Desktop() {
    while (!processes_.empty())
        processes_.pop_back();
    EndOrphans();
}

void Desktop::WriteOpener() const {
    const fs::path script = folder_ / "home/opener";
    WriteFile(script, Replaced("#!/bin/sh\nprintf '%s\\n' \"$1\" >>'@'\n", folder_ / "logs/opened"));
    fs::permissions(script, fs::perms::owner_all);
    const fs::path applications = folder_ / "home/.local/share/applications";
    WriteFile(applications / "opener.desktop", Replaced(kOpenerEntry, script));
    WriteFile(applications / "mimeapps.list", kOpenerDefaults);
}

void Desktop::StartDisplay() {
    // It chooses a free number, and writes it when it is ready.
    Process& display =
        Start("display", {"Xvfb", "-displayfd", "1", "-screen", "0", "1280x800x24", "-nolisten", "tcp", "-noreset"});
    display.Await("a display", [&] { return display.Output().ends_with('\n'); });
    environment_["DISPLAY"] = ":" + Lines(display.Output()).at(0);
}

void Desktop::StartBus() {
    Process& bus =
        Start("bus", {"dbus-daemon", "--nofork", "--print-address=1", "--config-file=" OMBRIVEL_BUS_SETTINGS});
    bus.Await("a session bus", [&] { return bus.Output().ends_with('\n'); });
    environment_["DBUS_SESSION_BUS_ADDRESS"] = Lines(bus.Output()).at(0);
}

void Desktop::StartWindowManager() {
    WriteFile(folder_ / "openbox.xml", kWindowManagerSettings);
    Process& manager = Start("window-manager", {"openbox", "--config-file", folder_ / "openbox.xml"});
    manager.Await("a window manager that xdotool finds", [this] { return !Run({"xdotool", "get_desktop"}).empty(); });
}

Process& Desktop::Start(const std::string& name, const Words& command) {
    const fs::path log = folder_ / "logs" / (name + std::to_string(processes_.size()));
    processes_.push_back(std::make_unique<Process>(command, Process::Setting{environment_, folder_, log}));
    return *processes_.back();
}

std::string Desktop::Run(const Words& command) const {
    Process process(command, {environment_, folder_, folder_ / "logs/command"});
    return process.Wait() == 0 ? process.Output() : std::string();
}

Process& Desktop::Pretend(const Words& words) {
    Words command{OMBRIVEL_PRETEND};
    command.insert(command.end(), words.begin(), words.end());
    Process& process = Start(words.at(0), command);
    process.Await("a pretended " + words.at(0), [&] { return process.Output().starts_with("ready\n"); });
    return process;
}

std::vector<std::string> Desktop::Shown() const {
    std::vector<std::string> paths = PathsIn(fileManager_->Output());
    paths.erase(paths.begin()); // "ready"
    return paths;
}

std::vector<std::string> Desktop::Opened() const {
    return PathsIn(ReadFile(folder_ / "logs/opened"));
}

std::vector<WindowId> Desktop::WindowsOf(const Process& process) const {
    return Lines(Run({"xdotool", "search", "--onlyvisible", "--pid", std::to_string(process.Id())}));
}

WindowId Desktop::ActiveWindow() const {
    const auto lines = Lines(Run({"xdotool", "getactivewindow"}));
    return lines.empty() ? WindowId() : lines[0];
}

Desktop::Size Desktop::SizeOf(const WindowId& window) const {
    const auto lines = Lines(Run({"xdotool", "getwindowgeometry", "--shell", window})); // WINDOW, X, Y, WIDTH, HEIGHT
    return lines.size() < 5 ? Size() : Size{std::stoi(lines[3].substr(6)), std::stoi(lines[4].substr(7))};
}

std::string Desktop::TitleOf(const WindowId& window) const {
    return Lines(Run({"xdotool", "getwindowname", window})).at(0);
}

void Desktop::Do(Words command) const {
    command.insert(command.begin(), "xdotool");
    Run(command);
}

void Desktop::Press(Words keys) const {
    keys.insert(keys.begin(), "key");
    Do(keys);
}

void Desktop::MoveTo(const WindowId& window, int x, int y) const {
    Do({"mousemove", "--window", window, std::to_string(x), std::to_string(y)});
}

void Desktop::ClickAt(const WindowId& window, int x, int y) const {
    MoveTo(window, x, y);
    Do({"click", "1"});
}

void Desktop::SavePicture(const fs::path& file) const {
    Run({"import", "-silent", "-window", "root", file});
}
