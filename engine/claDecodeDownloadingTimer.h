#pragma once

#include "framework/threads/Timer.h"

#include <string>

class FolderItem;
class Thread;

// Looks once a second whether a part has arrived, and wakes the thread that sleeps until then. Runs from its making
// until the part is there, without a limit, for as long as somebody holds it. Made on the main thread.
class claDecodeDownloadingTimer : public Timer {
public:
    // `fileName` is the name of the finished part.
    claDecodeDownloadingTimer(const Ref<Thread>& parent, const Ref<FolderItem>& folder, const std::string& fileName);

protected:
    void Event_Action() override;

private:
    Ref<Thread> Parent;
    std::string FileName;
    Ref<FolderItem> Folder;
};
