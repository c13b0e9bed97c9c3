#include "framework/files/SpecialFolder.h"

#include "framework/base/Immortal.h"
#include "framework/base/Program.h"
#include "framework/files/FolderItem.h"

#include <glib.h>

Ref<FolderItem> SpecialFolder::Trash() {
    static const Immortal<Ref<FolderItem>> trash(New<FolderItem>(""));
    return *trash;
}

Ref<FolderItem> SpecialFolder::Preferences() {
    const std::string path = g_get_user_config_dir();
    g_mkdir_with_parents(path.c_str(), 0700);
    return New<FolderItem>(path);
}

Ref<FolderItem> SpecialFolder::UserHome() {
    return New<FolderItem>(g_get_home_dir());
}

Ref<FolderItem> SpecialFolder::Resources() {
    return New<FolderItem>(PathBesideProgram("../Resources"));
}
