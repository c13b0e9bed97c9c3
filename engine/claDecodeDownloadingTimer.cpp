#include "engine/claDecodeDownloadingTimer.h"

#include "framework/files/FolderItem.h"
#include "framework/threads/Thread.h"

namespace {

constexpr int32_t kOff = 0;
constexpr int32_t kRepeating = 2;
constexpr int32_t kEverySecond = 1000;

} // namespace

claDecodeDownloadingTimer::claDecodeDownloadingTimer(const Ref<Thread>& parent, const Ref<FolderItem>& folder,
                                                     const std::string& fileName)
    : Parent(parent), FileName(fileName), Folder(folder) {
    SetMode(kRepeating);
    SetPeriod(kEverySecond);
}

void claDecodeDownloadingTimer::Event_Action() {
    if (!Folder->Child(FileName)->Exists())
        return;
    SetMode(kOff);
    Parent->Resume();
}
