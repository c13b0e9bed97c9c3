#include "engine/FailureNotice.h"

#include "framework/desktop/Desktop.h"
#include "framework/files/FolderItem.h"
#include "framework/files/Volume.h"
#include "framework/text/Text.h"
#include "framework/threads/MainThread.h"
#include "settings/Multilingual.h"

#include <cerrno>
#include <system_error>

namespace {

// Main thread.
std::string Reason(int failure, const std::string& volume) {
    if (failure == ENOSPC || failure == EDQUOT)
        return Multilingual::GetString("NotificationNoSpace", Displayable(volume));
    return Multilingual::GetString("NotificationFailure", std::generic_category().message(failure));
}

} // namespace

void TellNotWhole(const FolderItem& file, int failure, bool partsAreInTrash) {
    if (failure == 0)
        return;
    const std::string volume = VolumeName(file.AbsolutePath()); // a dead server takes its time
    RunOnMainThread([&] {
        std::string text = Reason(failure, volume);
        if (partsAreInTrash)
            text += " " + Multilingual::GetString("NotificationPartsInTrash");
        NotifyUrgently(Multilingual::GetString("NotificationNotWhole", Displayable(file.Name())), text);
    });
}
