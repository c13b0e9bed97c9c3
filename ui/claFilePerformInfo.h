#pragma once

#include "framework/base/Ref.h"

#include <string>

class FolderItem;
class Picture;
class ProgressBar;
class claFilePerform;
class claThread;

// One row of the operation list: one running cut or glue. Made by claFilePerform::AddInfo alone. The row belongs to the
// main thread; its worker holds it for as long as it runs, and writes to Bar directly.
class claFilePerformInfo : public Object {
public:
    std::string Name; // first line: the file's name
    Ref<claFilePerform> Parent;
    std::string Status; // second line
    Ref<Picture> Icon;
    Ref<ProgressBar> Bar;
    Ref<FolderItem> FileToShow; // what Close shows; nil for an operation that was stopped
    Ref<claThread> PerformThread;

    // Asks for a repaint of the list. The workers do not call it: a new status reaches the screen with whatever
    // repaints the list next.
    void Update();

    // Ends the row: takes it out of the list, shows FileToShow if the user wants that, and quits the program if this
    // was the last operation of a run that opened files began. The worker's last act on the list.
    void Close();
};
