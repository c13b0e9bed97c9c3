#pragma once

#include "framework/base/Ref.h"

#include <string>

class FolderItem;

// The user's settings: read from one small file at the start, written back at the end, and changed in memory in
// between. Main thread. There are no change notices.
class claPreferences : public Object {
public:
    // The defaults. Touches no file, but makes the folder of the preferences if it is missing.
    claPreferences();

    std::string PreferencesVersion; // first field of the file; a file with another one is not read
    bool MovePartsToTrash = true;   // the parts go to the Trash after a glue
    bool LaunchArchives = true;     // a glued .zip or .rar file is opened
    bool ShowFilesAfter = true;     // a finished file is shown in the file manager
    bool AutoQuit = true;           // the program ends with its last operation, if it was started by opening files
    std::string Language;           // name of a language folder
    bool SearchForUpdates = true;   // look for a newer version at the start

    // Reads the file, if it is there and of this version. Holding Shift leaves the defaults in force instead. A file
    // that can't be opened is a nil object failure.
    void Load();
    // Replaces the file by a new one. A file that can't be created is a nil object failure; what can't be written goes
    // unnoticed, and the older file stays.
    void Save() const;

private:
    Ref<FolderItem> file_;
};
