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

// Beside the parts, under their base name or the first numbered variant of it that is free. Unlike in a cut, each
// variant is made from the base itself.
Ref<FolderItem> FreeTarget(const FolderItem& folder, const std::string& base) {
    Ref<FolderItem> target = folder.Child(base);
    for (int32_t n = 1; target->Exists(); ++n) {
        target = folder.Child(NumberedVariant(base, n));
        RuntimeBackgroundTask();
    }
    return target;
}

} // namespace

void StartGlue(const Ref<FolderItem>& file, std::vector<Ref<FolderItem>>& inUse) {
    if (IsInUse(*file, inUse))
        return;
    const auto thread = New<claDecodeThread>();
    thread->Coming.emplace();
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
    thread->File = FreeTarget(*thread->Folder, thread->FileName);
    thread->StreamOut = thread->File->CreateBinaryFile(FileTypes::Unknown()->Operator_Convert());
    thread->Run();
}
