#include "engine/PartArrival.h"

#include "engine/PartNames.h"

#include <algorithm>
#include <vector>

namespace {

bool IsEmptyFile(const EntryStatus& entry) {
    return entry.Plain && entry.Length == 0;
}

} // namespace

PartArrival::PartArrival(const Ref<FolderItem>& folder, const std::string& name)
    : folder_(folder), part_(folder->Child(name)), control_(folder->Child(ControlFileName(name))), name_(name) {}

PartState PartArrival::Look() {
    for (;;) {
        const std::optional<EntryStatus> part = part_->Status();
        const bool empty = part && IsEmptyFile(*part);
        const bool arriving = control_->Exists() || ((!part || empty) && HasDownload());
        if (arriving && empty)
            placeholder_ = part;
        if (arriving)
            return PartState::Arriving;
        if (part && !empty)
            return PartState::There;
        if (part_->Status() == part) // else the download may have become the part between the two looks
            return part ? PartState::There : PartState::Missing;
    }
}

bool PartArrival::HasArrived() {
    const std::optional<EntryStatus> part = part_->Status();
    return part && part != placeholder_ && Look() == PartState::There;
}

bool PartArrival::HasDownload() const {
    const std::vector<std::string> names = DownloadNames(name_);
    return std::any_of(names.begin(), names.end(),
                       [this](const std::string& name) { return folder_->Child(name)->Exists(); }) ||
           folder_->AnyName([this](const std::string& name) { return IsSaltedDownload(name, name_); });
}
