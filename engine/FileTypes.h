#pragma once

#include "framework/files/FileType.h"

// The registered file types. InitFileTypes makes them; from then on they may be read on any thread.
class FileTypes {
public:
    static const Ref<FileType>& Unknown();      // glued files and the preferences file: no code
    static const Ref<FileType>& OmbrivelPart(); // parts
};

// Once, on the main thread, before anything else runs.
void InitFileTypes();
