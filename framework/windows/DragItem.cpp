#include "framework/windows/DragItem.h"

#include "framework/files/FolderItem.h"

DragItem::DragItem(std::vector<Ref<::FolderItem>> files) : files_(std::move(files)) {}

bool DragItem::FolderItemAvailable() const {
    return at_ < files_.size();
}

Ref<FolderItem> DragItem::FolderItem() const {
    return FolderItemAvailable() ? files_[at_] : nullptr;
}

bool DragItem::NextItem() {
    if (FolderItemAvailable())
        ++at_;
    return FolderItemAvailable();
}
