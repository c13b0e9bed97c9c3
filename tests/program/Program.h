#pragma once

#include "tests/program/Desktop.h"

// One run of the program on a desktop.
class Program {
public:
    Program(const Desktop& desktop, const Words& command, const Process::Setting& setting);

    Process& Run() { return process_; }
    // Waits for the end of the program and gives its exit code.
    int End(std::chrono::milliseconds limit = kPatience) { return process_.Wait(limit); }

    // Waits for the main window.
    WindowId MainWindow();
    // Waits until the program has just one window, and that is in front.
    WindowId OnlyWindow();
    // Waits until another window of the program than the main one is in front.
    WindowId Dialog();
    // Waits for a dialog, presses the keys in it and waits until it has gone.
    void Answer(const Words& keys);
    // What its close button does.
    void CloseMainWindow();

    // Buttons of the toolbar, by the distance of their middle from the window's left edge, or from its right if
    // negative.
    static constexpr int kGlueTool = 35, kCutTool = 95;
    void ClickTool(int fromEdge);

    // In a row of the list.
    void ClickStop(int row);

private:
    const Desktop& desktop_;
    Process process_;
    WindowId main_;
};
