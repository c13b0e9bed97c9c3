#pragma once

#include "framework/base/Ref.h"

class FolderItem;

// Folders of the current user. Safe on every thread.
class SpecialFolder {
public:
    // A mark rather than a place: only MoveFileTo takes it, and finds the trash of the volume concerned.
    static Ref<FolderItem> Trash();
    // The user's configuration folder, made if missing.
    static Ref<FolderItem> Preferences();
    static Ref<FolderItem> UserHome();
    // The folder of the program's own resources, beside the folder of the program file.
    static Ref<FolderItem> Resources();
};
