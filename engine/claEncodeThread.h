#pragma once

#include "engine/ReservedBaseName.h"
#include "engine/claThread.h"

#include <memory>
#include <string>
#include <vector>

class BinaryStream;
class FolderItem;
class claFilePerformInfo;

// The worker of a cut: writes the parts of one file beside it and shows its progress in one row of the list. A stop
// moves what it has written to the Trash; the source is never changed. An empty source gives no part and leaves its row
// in the list; so does whatever else ends the body early.
class claEncodeThread : public claThread {
public:
    // Filled in by who starts the thread.
    Ref<BinaryStream> StreamIn;                    // the open source
    Ref<FolderItem> File;                          // the source
    int32_t PartSize = 0;                          // bytes
    Ref<FolderItem> Folder;                        // where the parts go
    std::string FileName;                          // base of their names, free of collisions
    std::unique_ptr<ReservedBaseName> Reservation; // keeps it free until the first part is there; may be nil

protected:
    void Event_RunThread() override;

private:
    Ref<claFilePerformInfo> AddRow();
    int FailureOf(const BinaryStream& part) const;
    void FillPart(BinaryStream& part, claFilePerformInfo& info);

    std::vector<Ref<FolderItem>> FileDone; // the parts written so far
};
