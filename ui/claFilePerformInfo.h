#pragma once

#include "framework/windows/CoalescedUpdate.h"

#include <cstdint>
#include <mutex>
#include <string>

class FolderItem;
class Picture;
class ProgressBar;
class claFilePerform;
class claThread;

// One row of the operation list: one running cut or glue. Made by claFilePerform::AddInfo alone. The row belongs to the
// main thread; its worker holds it for as long as it runs, and writes to SetStatus and Bar directly.
class claFilePerformInfo : public CoalescedUpdate {
public:
    std::string Name; // first line: the file's name
    Ref<claFilePerform> Parent;
    std::string Status; // second line
    Ref<Picture> Icon;
    Ref<ProgressBar> Bar;
    Ref<FolderItem> FileToShow; // what Close shows; nil for an operation that was stopped
    Ref<claThread> PerformThread;

    // Sets Status to the text of that key, a literal, with the number of a part. From a worker soon: of the thousands
    // that it may tell in a second, only those are made that somebody could read; it reaches the screen with the bar's
    // next step. From the main thread at once, as a worker that goes to sleep takes no more steps. Any thread.
    void SetStatus(const char* key, int32_t part);

    // Asks for a repaint of the list. The workers do not call it: a new status reaches the screen with whatever
    // repaints the list next.
    void Update();

    // Ends the row: takes it out of the list, shows FileToShow if the user wants that, and quits the program if this
    // was the last operation of a run that opened files began. The worker's last act on the list.
    void Close();

private:
    void UpdateScreen() override;

    std::mutex mutex_; // guards the two below
    const char* statusKey_ = nullptr;
    int32_t statusPart_ = 0;
};
