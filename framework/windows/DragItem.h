#pragma once

#include "framework/base/Ref.h"

#include <cstddef>
#include <vector>

class FolderItem;

// A cursor over the things of one drop, which are the files that the control accepts.
class DragItem : public Object {
public:
    explicit DragItem(std::vector<Ref<::FolderItem>> files);

    // The present thing is a file.
    bool FolderItemAvailable() const;
    // That file, or nil.
    Ref<::FolderItem> FolderItem() const;
    // Moves on to the next thing; false if there is none.
    bool NextItem();

private:
    std::vector<Ref<::FolderItem>> files_;
    std::size_t at_ = 0;
};
