#pragma once

#include "tests/program/Process.h"

#include <memory>
#include <set>

// A window, by the number that the display gave it. Later ones have higher numbers.
using WindowId = unsigned long;

// A desktop of its own for one test: display, window manager, session bus, file manager, home folder, and programs that
// open archives, folders and web pages. Nothing of the user's own desktop is seen or touched. Keys and the pointer work
// as a user's do: on whatever window is in front.
class Desktop {
public:
    // Everything is kept in that folder. Returns when all of it runs.
    explicit Desktop(const std::filesystem::path& folder);

    const Environment& Variables() const { return environment_; }
    std::filesystem::path Configuration() const { return folder_ / "home/.config"; }
    std::filesystem::path Downloads() const { return folder_ / "home/Downloads"; } // not made at first
    // The files that the user would find in the Trash.
    std::filesystem::path Trash() const { return folder_ / "home/.local/share/Trash/files"; }

    // Paths that a file manager was asked to show, in order.
    Words Shown() const;
    // Paths and addresses that were handed to the program which opens them, in order.
    Words Opened() const;

    // The display ends, and with it every connection to it.
    void LoseDisplay() const;

    // Runs a command until the desktop goes.
    Process& Serve(const Words& command);
    // The same for one of the pretended neighbours (see pretend_main.cpp), once it is there.
    const Process& Pretend(const Words& words);

    std::set<WindowId> WindowsOf(const Process& process) const;
    // 0 if there is none.
    WindowId ActiveWindow() const;

    void Press(Words keys) const;
    // Another command of xdotool's. Gives what it tells, empty if it fails.
    std::string Do(Words command) const;
    // The output of a command that ends by itself; empty if it fails.
    std::string Run(const Words& command) const;

private:
    std::filesystem::path folder_;
    Environment environment_;
    std::vector<std::unique_ptr<Process>> processes_;
    const Process* fileManager_ = nullptr;
};
