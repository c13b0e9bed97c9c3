#pragma once

#include "framework/base/Ref.h"

#include <string>

class FolderItem;
class Window;

// A dialog for one existing file. Main thread.
class OpenDialog : public Object {
public:
    // Name of a registered FileType, whose extensions are offered, or "????" for all files. A file that is of the type
    // by its code alone is not offered: the desktop's dialogs know names only.
    std::string Filter;

    // Shows the dialog attached to a window and returns the file, or nil.
    Ref<FolderItem> ShowModalWithin(const Ref<Window>& parent);
};
