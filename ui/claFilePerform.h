#pragma once

#include "framework/windows/Canvas.h"

#include <functional>
#include <string>
#include <vector>

class claFilePerformInfo;
class claThread;
class Picture;
class Timer;

// The list of what runs at this moment: one row per operation, painted by hand, with icon, name, bar, status and a stop
// button (see RowGeometry.h). It has no selection, no keyboard and no scrolling. Main thread.
class claFilePerform : public Canvas {
public:
    // The rows, top row first, in the order in which their operations were started. Each has a live Bar. Only AddInfo
    // adds, only claFilePerformInfo::Close removes.
    std::vector<Ref<claFilePerformInfo>> Info;

    // The text about the number of rows has changed.
    std::function<void(const std::string&)> SetStatus;

    // Adds a row for a worker; `maximum` is its size in whole mebibytes.
    virtual Ref<claFilePerformInfo> AddInfo(const std::string& name, int32_t maximum, int32_t value,
                                            const std::string& status, const Ref<Picture>& icon,
                                            const Ref<claThread>& thread);
    // Works out that text anew and raises SetStatus.
    virtual void UpdateStatus();

    void Event_Paint(Graphics& graphics) override;
    void Event_MouseMove(int32_t x, int32_t y) override;
    // Tells the worker to stop whose button the pointer was over at its last move.
    bool Event_MouseDown(int32_t x, int32_t y) override;
    std::optional<std::vector<AccessibleRow>> AccessibleRows() const override;

private:
    void PaintRow(Graphics& graphics, int32_t index) const;
    bool IsOnStop(int32_t index, int32_t x, int32_t y) const;

    // Tells the desktop that operations are running, or that none is.
    void TellWork();

    int32_t HoveredStop = -1; // the row whose stop button lies under the pointer, or -1
    Ref<Timer> dockTimer_;    // tells the dock how far all rows are, while there is one
};
