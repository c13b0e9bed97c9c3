#include "engine/StartGlue.h"

#include "engine/FileTypes.h"
#include "engine/PartNames.h"
#include "engine/claDecodeThread.h"
#include "framework/desktop/Desktop.h"
#include "framework/files/BinaryStream.h"
#include "framework/files/FolderItem.h"
#include "framework/text/Text.h"
#include "framework/threads/Yield.h"

#include <algorithm>

namespace {

bool IsInUse(const FolderItem& file, const std::vector<Ref<FolderItem>>& inUse) {
    const std::string folder = file.Parent()->AbsolutePath();
    const std::string name = file.Name();
    return std::any_of(inUse.begin(), inUse.end(), [&](const Ref<FolderItem>& entry) {
        const std::string base = entry->Name();
        return RuntimeStringCompare(folder, entry->Parent()->AbsolutePath()) == 0 &&
               RuntimeStringCompare(Left(name, Len(base)), base) == 0;
    });
}

// Beside the parts, under their base name or the first numbered variant of it that is free: found by making the file,
// so that nothing can come into being there meanwhile. Unlike in a cut, each variant is made from the base itself.
void MakeTarget(claDecodeThread& glue) {
    for (int32_t n = 0;; ++n) {
        glue.File = glue.Folder->Child(n == 0 ? glue.FileName : NumberedVariant(glue.FileName, n));
        glue.StreamOut = glue.File->CreateBinaryFile(FileTypes::Unknown()->Operator_Convert());
        if (!glue.StreamOut.IsNil() || !glue.File->Exists()) // made, or it can't be made at all
            return;
        RuntimeBackgroundTask();
    }
}

// What a glue lays hold of, given back if its worker does not come to run: the system may have no thread for it.
struct Claim {
    claDecodeThread& glue;
    std::vector<Ref<FolderItem>>& inUse;
    const Ref<FolderItem>& base;
    bool runs = false;

    ~Claim() {
        if (runs)
            return;
        std::erase(inUse, base);
        if (!glue.StreamOut.IsNil())
            glue.File->Delete();
    }
};

} // namespace

void StartGlue(const Ref<FolderItem>& file, std::vector<Ref<FolderItem>>& inUse) {
    if (IsInUse(*file, inUse))
        return;
    const auto thread = New<claDecodeThread>();
    thread->Pending.emplace();
    thread->Priority = kWorkerPriority;
    thread->Folder = file->Parent();
    thread->FileName = BaseOfPart(file->Name());
    // One below the first number, whichever part was chosen.
    if (thread->Folder->Child(PartName(thread->FileName, 0))->Exists())
        thread->FileCount = -1;
    const Ref<FolderItem> base = thread->Folder->Child(thread->FileName);
    if (base->Name().empty()) {
        Beep();
        return;
    }
    inUse.push_back(base); // also when the target gets a number; before the search for it, which may serve events
    Claim claim{*thread, inUse, base};
    MakeTarget(*thread);
    thread->Run();
    claim.runs = true;
}
