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
    : parent_(parent), fileName_(fileName), folder_(folder) {
    SetMode(kRepeating);
    SetPeriod(kEverySecond);
}

void claDecodeDownloadingTimer::Event_Action() {
    if (!folder_->Child(fileName_)->Exists())
        return;
    SetMode(kOff);
    parent_->Resume();
}
