#pragma once

#include "framework/base/Ref.h"

#include <string>

class FolderItem;
class Window;

// A dialog for one existing file. Main thread.
class OpenDialog : public Object {
public:
    // Name of a registered FileType, or "????" for all files. A desktop's own dialog knows names only, and offers the
    // type's extensions; Qt's offers what FolderItem.Type says is of the type.
    std::string Filter;

    // Shows the dialog attached to a window and returns the file, or nil.
    Ref<FolderItem> ShowModalWithin(const Ref<Window>& parent);
};
