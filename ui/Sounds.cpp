#include "ui/Sounds.h"

#include "framework/base/Immortal.h"
#include "framework/desktop/Sound.h"
#include "framework/files/FolderItem.h"
#include "framework/files/SpecialFolder.h"

#include <string>

namespace {

Ref<Sound> Load(const std::string& fileName) {
    const Ref<FolderItem> resources = SpecialFolder::Resources();
    return resources.IsNil() ? nullptr : resources->Child(fileName)->OpenAsSound();
}

} // namespace

Ref<Sound> sndResetPreferences() {
    static const Immortal<Ref<Sound>> kept(Load("sndResetPreferences.wav"));
    return *kept;
}

Ref<Sound> sndNewVersion() {
    static const Immortal<Ref<Sound>> kept(Load("sndNewVersion.mp3"));
    return *kept;
}
