#include "engine/StartCut.h"

#include "engine/PartNames.h"
#include "engine/PendingOperation.h"
#include "engine/ReservedBaseName.h"
#include "engine/claEncodeThread.h"
#include "framework/base/Immortal.h"
#include "framework/base/StandardError.h"
#include "framework/desktop/Desktop.h"
#include "framework/files/BinaryStream.h"
#include "framework/files/FolderItem.h"
#include "framework/text/Number.h"
#include "framework/text/Text.h"
#include "framework/threads/Yield.h"
#include "framework/windows/ComboBox.h"
#include "framework/windows/ModalRun.h"
#include "ui/winCut.h"
#include "ui/winMain.h"

#include <deque>

namespace {

// Beyond so many names, one reading of the folder is cheaper than asking for each of them.
constexpr int32_t kManyParts = 10000;

// The entries only say where to look: whether a name in other letters is the same one, the file system knows.
bool HasPartAmong(const FolderItem& entries, const std::string& base, int32_t count) {
    const std::string beginning = FoldedCase(base + ".");
    for (int32_t i = 1; i <= entries.Count(); ++i) {
        const std::string name = FoldedCase(entries.Item(i)->Name());
        const double number = name.starts_with(beginning) ? Val(std::string_view(name).substr(beginning.size())) : 0;
        if (number >= 1 && number <= count && entries.Child(PartName(base, RuntimeCvtReal64ToSInt32(number)))->Exists())
            return true;
        RuntimeBackgroundTask();
    }
    return false;
}

// Only the numbers that the new series will use count: an older, longer series may keep its tail beside it.
bool HasPart(const FolderItem& folder, const std::string& base, int32_t count) {
    const FolderItem entries(folder.AbsolutePath()); // reads the folder anew
    // A folder without any entry is one that can't be read: the source lies in it.
    if (count > kManyParts && entries.Count() > 0)
        return HasPartAmong(entries, base, count);
    for (int32_t i = 1; i <= count; ++i) {
        if (folder.Child(PartName(base, i))->Exists())
            return true;
        RuntimeBackgroundTask();
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
    thread->Reservation = std::make_unique<ReservedBaseName>(*thread->Folder, thread->FileName);
    thread->Pending.emplace();
    thread->Run();
}

// Closes the dialog on every way out. One that stayed would give the button of this run to a later one that is closed
// by its close box.
struct ClosedAtTheEnd {
    winCut& dialog;
    ~ClosedAtTheEnd() { dialog.Close(); }
};

// Files that came while a dialog was up, or while a cut was being prepared. Each is served by an event of its own
// afterwards, in the order of their coming.
struct WaitingFile {
    Ref<FolderItem> file;
    PendingOperation pending;
};
const Immortal<std::deque<WaitingFile>> waiting;

void AskAndCut(const Ref<FolderItem>& file) {
    // Until the worker runs: its preparation serves events, and a cut that began in the middle could settle on the same
    // names.
    const ModalRun cutDialogLock;
    const PendingOperation asking;
    const Ref<winCut> dialog = winCut::Instance();
    const ClosedAtTheEnd closed{*dialog};
    dialog->ShowWithin(winMain::Instance(), -1);
    dialog->FileSize = static_cast<int32_t>(static_cast<uint32_t>(file->Length())); // the low 32 bits only
    dialog->UpdateStatus();
    if (dialog->ShowModal() == dialog->ActionButton)
        RunCut(file, Val(dialog->comPartSize()->Text()));
}

void ServeNext() {
    const WaitingFile next = waiting->front();
    waiting->pop_front();
    if (next.file->Exists())
        AskAndCut(next.file);
    else
        LogNoSuchFile(next.file->AbsolutePath());
}

} // namespace

void StartCut(const Ref<FolderItem>& file) {
    if (file->Parent().IsNil()) { // the root folder: there is no place beside it
        Beep();
        return;
    }
    if (ModalRun::Any() || !waiting->empty()) {
        waiting->push_back({file, {}});
        ModalRun::After(ServeNext);
    } else {
        AskAndCut(file);
    }
}

void LogWaitingCuts() {
    for (const WaitingFile& next : *waiting)
        LogToStderr(next.file->AbsolutePath() + ": the program ended before it was cut");
}

std::string FreeBaseName(const FolderItem& folder, std::string name, int32_t count) {
    for (int32_t n = 1; ReservedBaseName::Is(folder, name) || HasPart(folder, name, count); ++n) {
        name = NumberedVariant(name, n);
        RuntimeBackgroundTask();
    }
    return name;
}
