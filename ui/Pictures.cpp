#include "ui/Pictures.h"

#include "framework/base/Immortal.h"
#include "framework/files/FolderItem.h"
#include "framework/files/SpecialFolder.h"
#include "framework/windows/Graphics.h"

#include <string>

namespace {

using MaskAccessor = Ref<Picture> (*)();

// The shape of every accessor. `kept` is the accessor's own cache.
Ref<Picture> Kept(Ref<Picture>& kept, const std::string& fileName, MaskAccessor mask = nullptr) {
    if (!kept.IsNil())
        return kept;
    const Ref<FolderItem> resources = SpecialFolder::Resources();
    if (resources.IsNil())
        return nullptr;
    kept = resources->Child(fileName)->OpenAsPicture();
    if (mask != nullptr && !kept.IsNil())
        kept->Mask(true)->Graphics().DrawPicture(mask(), 0, 0);
    return kept;
}

} // namespace

Ref<Picture> picBack() {
    static const Immortal<Ref<Picture>> kept;
    return Kept(*kept, "picBack.png");
}

Ref<Picture> picIconGlue() {
    static const Immortal<Ref<Picture>> kept;
    return Kept(*kept, "picIconGlue.png", picIconGlueMask);
}

Ref<Picture> picIconCut() {
    static const Immortal<Ref<Picture>> kept;
    return Kept(*kept, "picIconCut.png", picIconCutMask);
}

Ref<Picture> picIconUrl() {
    static const Immortal<Ref<Picture>> kept;
    return Kept(*kept, "picIconUrl.png", picIconUrlMask);
}

Ref<Picture> picStop() {
    static const Immortal<Ref<Picture>> kept;
    return Kept(*kept, "picStop.png", picStopMask);
}

Ref<Picture> picStopActive() {
    static const Immortal<Ref<Picture>> kept;
    return Kept(*kept, "picStopActive.png", picStopActiveMask);
}

Ref<Picture> IconPicture() {
    static const Immortal<Ref<Picture>> kept;
    return Kept(*kept, "IconPicture.png", IconMask);
}

Ref<Picture> picIconGlueMask() {
    static const Immortal<Ref<Picture>> kept;
    return Kept(*kept, "picIconGlueMask.png");
}

Ref<Picture> picIconCutMask() {
    static const Immortal<Ref<Picture>> kept;
    return Kept(*kept, "picIconCutMask.png");
}

Ref<Picture> picIconUrlMask() {
    static const Immortal<Ref<Picture>> kept;
    return Kept(*kept, "picIconUrlMask.png");
}

Ref<Picture> picStopMask() {
    static const Immortal<Ref<Picture>> kept;
    return Kept(*kept, "picStopMask.png");
}

Ref<Picture> picStopActiveMask() {
    static const Immortal<Ref<Picture>> kept;
    return Kept(*kept, "picStopActiveMask.png");
}

Ref<Picture> IconMask() {
    static const Immortal<Ref<Picture>> kept;
    return Kept(*kept, "IconMask.png");
}
