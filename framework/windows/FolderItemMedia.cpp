// FolderItem's ways to pictures and sounds, apart from the rest because they need more of Qt.

#include "framework/desktop/Sound.h"
#include "framework/files/FolderItem.h"
#include "framework/windows/Picture.h"

Ref<Picture> FolderItem::OpenAsPicture() const {
    return Picture::Load(path_);
}

Ref<Sound> FolderItem::OpenAsSound() const {
    return Sound::Load(path_);
}
