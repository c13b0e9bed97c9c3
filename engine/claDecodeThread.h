#pragma once

#include "engine/claThread.h"

#include <string>
#include <vector>

class BinaryStream;
class FolderItem;
class PartArrival;
class Writeback;
class claFilePerformInfo;

// The worker of a glue: appends the parts of a series to the target in ascending number, waits for a part that a
// browser is still downloading, and applies the user's preferences for parts and archives at the end. A stop moves the
// unfinished target to the Trash and leaves the parts alone. A worker that an exception ends leaves its row in the list
// and its series in use until the program is started anew.
class claDecodeThread : public claThread {
public:
    // Filled in by who starts the thread.
    Ref<BinaryStream> StreamOut; // the target, open for writing
    std::string FileName;        // base name of the parts
    int32_t FileCount = 0;       // number of the part last looked for; starts one below the first
    Ref<FolderItem> Folder;      // of the parts and of the target
    Ref<FolderItem> File;        // the target

protected:
    void Event_RunThread() override;

private:
    int32_t EstimateMegabytes() const;
    void AddRow();
    Ref<FolderItem> GetNextFile();
    void WaitForDownload(const PartArrival& part);
    void Append(const Ref<FolderItem>& part);
    Ref<FolderItem> Finish();
    void TellIfNotWhole() const;

    std::vector<Ref<FolderItem>> FileDone; // parts consumed so far
    int failure_ = 0;                      // of reading them or of the target's way to its device, the first
    bool readsAhead_ = false;              // small parts come from a disk, not from memory
    bool trashes_ = false;                 // the user wants them in the Trash
    Ref<Writeback> writeback_;             // of the target
    Ref<claFilePerformInfo> Info;          // the row
};
