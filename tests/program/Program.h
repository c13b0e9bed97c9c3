#pragma once

#include "tests/program/Desktop.h"

// One run of the program on a desktop.
class Program : public Process {
public:
    Program(const Desktop& desktop, const Words& command, const Setting& setting)
        : Process(command, setting), desktop_(desktop) {}

    // Waits for the main window.
    WindowId MainWindow() const;
    // Waits until the program has just one window, and that is in front.
    WindowId OnlyWindow() const;
    // Waits until another window of the program than the main one is in front.
    WindowId Dialog() const;
    // Waits for a dialog, presses the keys in it and waits until it has gone.
    void Answer(const Words& keys) const;
    // What its close button does.
    void CloseMainWindow() const;

    // A place in a main window that nobody has resized: from its left edge, or from its right if negative, and from the
    // list's upper edge.
    struct Place {
        int x, y;
    };
    static constexpr Place kGlueTool{35, -35}, kCutTool{95, -35}, kList{250, 100}, kFirstStop{-23, 26};
    void PointAt(const Place& place) const;
    void Click(const Place& place) const;

private:
    const Desktop& desktop_;
};
