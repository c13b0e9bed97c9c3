#include "engine/StartCut.h"

#include "engine/OnTheWay.h"
#include "engine/PartNames.h"
#include "engine/claEncodeThread.h"
#include "framework/files/BinaryStream.h"
#include "framework/files/FolderItem.h"
#include "framework/text/Number.h"
#include "framework/threads/Yield.h"
#include "framework/windows/ComboBox.h"
#include "ui/claDialogButton.h"
#include "ui/winCut.h"
#include "ui/winMain.h"

namespace {

constexpr int32_t kWorkerPriority = 1;

bool HasPart(const FolderItem& folder, const std::string& base, int32_t count) {
    for (int32_t i = 1; i <= count; ++i) {
        if (folder.Child(PartName(base, i))->Exists())
            return true;
        RuntimeBackgroundTask();
        if (i == INT32_MAX)
            break;
    }
    return false;
}

void RunCut(const Ref<FolderItem>& file, double megabytes) {
    const auto thread = New<claEncodeThread>();
    thread->Priority = kWorkerPriority;
    thread->File = file;
    // Not limited: what does not fit saturates.
    thread->PartSize = RuntimeCvtReal64ToSInt32(megabytes * 1024.0 * 1024.0);
    thread->StreamIn = file->OpenAsBinaryFile(false);
    thread->Folder = file->Parent();
    thread->FileName = FreeBaseName(*thread->Folder, file->Name(), PartCount(file->Length(), thread->PartSize));
    thread->Coming.emplace();
    thread->Run();
}

} // namespace

void StartCut(const Ref<FolderItem>& file) {
    const OnTheWay asking;
    const Ref<winCut> dialog = winCut::Instance();
    dialog->ShowWithin(winMain::Instance(), -1);
    dialog->FileSize = static_cast<int32_t>(static_cast<uint32_t>(file->Length())); // the low 32 bits only
    dialog->UpdateStatus();
    if (dialog->ShowModal() == dialog->ActionButton)
        RunCut(file, Val(dialog->comPartSize()->Text()));
    dialog->Close();
}

std::string FreeBaseName(const FolderItem& folder, std::string name, int32_t count) {
    for (int32_t n = 1; HasPart(folder, name, count); ++n) {
        name = NumberedVariant(name, n);
        RuntimeBackgroundTask();
    }
    return name;
}
