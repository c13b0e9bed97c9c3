#include "engine/claDecodeDownloadingTimer.h"

#include "framework/files/FolderItem.h"
#include "framework/threads/Thread.h"

namespace {

constexpr int32_t kEverySecond = 1000;

} // namespace

claDecodeDownloadingTimer::claDecodeDownloadingTimer(const Ref<Thread>& parent, const Ref<FolderItem>& folder,
                                                     const std::string& fileName)
    : Parent(parent), FileName(fileName), Folder(folder) {
    SetMode(TimerMode::Repeating);
    SetPeriod(kEverySecond);
}

void claDecodeDownloadingTimer::Event_Action() {
    if (!Folder->Child(FileName)->Exists())
        return;
    SetMode(TimerMode::Off);
    Parent->Resume();
}
