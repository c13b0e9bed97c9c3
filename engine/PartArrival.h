#pragma once

#include "framework/files/FolderItem.h"

#include <optional>
#include <string>

enum class PartState { There, Arriving, Missing };

// Tells a part that is there from one that a browser or a download program is still fetching; docs/downloads.md has
// their habits. Nothing is guessed from times or sizes. One thread at a time.
class PartArrival {
public:
    // `name` is that of the finished part.
    PartArrival(const Ref<FolderItem>& folder, const std::string& name);

    // What is there now. Reads the folder only where the part is empty or missing.
    PartState Look();

    // Whether the part is there now, asked again and again after Look() has found it arriving. That a download has
    // vanished does not count: one that was given up leaves its empty file behind, or for a moment at least. Costs one
    // look at one file for as long as nothing changes.
    bool HasArrived();

private:
    bool HasDownload() const;

    Ref<FolderItem> folder_, part_, control_;
    std::string name_;
    std::optional<EntryStatus> placeholder_; // the empty file that holds the name for a download, last seen
};
