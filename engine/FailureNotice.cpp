#include "engine/FailureNotice.h"

#include "framework/desktop/Desktop.h"
#include "framework/files/FolderItem.h"
#include "framework/files/Volume.h"
#include "framework/text/Text.h"
#include "settings/Multilingual.h"

#include <cerrno>
#include <system_error>

namespace {

std::string ReasonFor(const FolderItem& file, int failure) {
    if (failure == ENOSPC || failure == EDQUOT)
        return Multilingual::GetString("NotificationNoSpace", Displayable(VolumeName(file.AbsolutePath())));
    return Multilingual::GetString("NotificationFailure", std::generic_category().message(failure));
}

} // namespace

void TellNotWhole(const FolderItem& file, int failure, bool partsAreInTrash) {
    if (failure == 0)
        return;
    std::string text = ReasonFor(file, failure);
    if (partsAreInTrash)
        text += " " + Multilingual::GetString("NotificationPartsInTrash");
    NotifyUrgently(Multilingual::GetString("NotificationNotWhole", Displayable(file.Name())), text);
}
