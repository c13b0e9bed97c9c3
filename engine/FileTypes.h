#pragma once

#include "framework/files/FileType.h"

// The registered file types. Initialize makes them, once, on the main thread before anything else runs; from then on
// they may be read on any thread.
class FileTypes {
public:
    static void Initialize();

    static const Ref<FileType>& Unknown();      // glued files and the preferences file: no code
    static const Ref<FileType>& OmbrivelPart(); // parts
};
