#include "engine/claDecodeThread.h"

#include "core/App.h"
#include "engine/FailureNotice.h"
#include "engine/PartArrival.h"
#include "engine/PartNames.h"
#include "engine/claDecodeDownloadingTimer.h"
#include "framework/files/BinaryStream.h"
#include "framework/files/FolderItem.h"
#include "framework/files/SpecialFolder.h"
#include "framework/files/Writeback.h"
#include "framework/text/Number.h"
#include "framework/text/Text.h"
#include "framework/threads/MainThread.h"
#include "framework/windows/ProgressBar.h"
#include "settings/Multilingual.h"
#include "settings/claPreferences.h"
#include "ui/Pictures.h"
#include "ui/claFilePerform.h"
#include "ui/claFilePerformInfo.h"
#include "ui/winMain.h"

#include <algorithm>
#include <limits>

namespace {

// A part is appended to its end.
constexpr int64_t kWholePart = std::numeric_limits<int64_t>::max();

// The system reads a file ahead by itself, but not the next one. From a disk, small parts took half the time when the
// fourth next was under way, and 0.7 of it with the next one only.
constexpr int32_t kPartsAhead = 4;

// As the setting is at this moment: the user may change it while the worker runs.
bool Wants(bool claPreferences::*setting) {
    return OnMainThread([setting] { return *App::Instance()->Preferences.*setting; });
}

bool IsArchive(const std::string& name) {
    const std::string ending = Right(name, 4);
    return RuntimeStringCompare(ending, ".zip") == 0 || RuntimeStringCompare(ending, ".rar") == 0;
}

} // namespace

void claDecodeThread::Event_RunThread() {
    AddRow();
    writeback_ = New<Writeback>(*Folder, Stop);
    do {
        const Ref<FolderItem> part = GetNextFile();
        if (part.IsNil())
            break;
        Append(part);
        FileDone.push_back(part);
    } while (!Stop);
    StreamOut->Close();
    const int late = writeback_->WaitUntilOnDevice();
    if (failure_ == 0)
        failure_ = late;

    Ref<FolderItem> fileToShow;
    const bool stopped = Stop;
    if (stopped)
        File->MoveFileTo(SpecialFolder::Trash());
    else
        fileToShow = Finish();
    if (!stopped)
        TellIfNotWhole();
    RunOnMainThread([&] {
        Info->FileToShow = fileToShow;
        Info->Close();
        App::Instance()->RemoveInUse(Folder->Child(FileName));
    });
    Info = nullptr; // the row holds this thread in turn
}

// Whole megabytes of what the folder holds of the series, parts still being downloaded included. The sum goes through a
// whole number at every step, so each part loses its fraction and parts below a megabyte count nothing: that is
// accepted, the progress step copes with a maximum that is too small.
int32_t claDecodeThread::EstimateMegabytes() const {
    int32_t total = 0;
    for (int32_t i = 1; i <= Folder->Count(); ++i) {
        const Ref<FolderItem> item = Folder->Item(i);
        if (BelongsToSeries(item->Name(), FileName))
            total = RuntimeCvtReal64ToSInt32(double(total) +
                                             RuntimeCvtUInt64ToReal64(item->Length()) / double(kTransferBlock));
    }
    return total;
}

void claDecodeThread::AddRow() {
    const int32_t total = EstimateMegabytes();
    Info = OnMainThread([&] {
        return winMain::Instance()->canPerform()->AddInfo(
            File->Name(), total, 0, Multilingual::GetString("MainStatusPreparing"), picIconGlue(), Self(this));
    });
    Pending.reset();
}

// The next part, or nil when the series is at its end or the worker was stopped. The series ends at the first number
// that has neither a part nor a download.
Ref<FolderItem> claDecodeThread::GetNextFile() {
    ++FileCount;
    const std::string name = PartName(FileName, FileCount);
    const Ref<FolderItem> part = Folder->Child(name);
    PartArrival arrival(Folder, name);
    const PartState state = arrival.Look();
    if (state == PartState::There)
        return part;
    if (state == PartState::Missing)
        return nullptr;
    WaitForDownload(arrival);
    return !Stop && part->Exists() ? part : nullptr;
}

// Sleeps until the part has appeared or the worker is stopped, as long as it takes.
void claDecodeThread::WaitForDownload(const PartArrival& part) {
    Ref<claDecodeDownloadingTimer> timer; // works for as long as this holds it
    Suspend([&] {
        timer = New<claDecodeDownloadingTimer>(Self(this), part);
        Info->SetStatus("MainStatusWaiting", FileCount);
        return !Stop; // a stop that came just before would find nobody asleep to wake
    });
}

void claDecodeThread::Append(const Ref<FolderItem>& part) {
    const Ref<BinaryStream> stream = part->OpenAsBinaryFile(false);
    Info->SetStatus("MainStatusAddingPart", FileCount);
    if (StreamOut->MayClone())
        stream->PrepareToClone(StreamOut->Position(), Stop);
    StreamOut->SetWriteback(writeback_);
    if (readsAhead_)
        Folder->Child(PartName(FileName, FileCount + kPartsAhead))->BeginToRead();
    while (!stream->AtEOF()) {
        StreamOut->WriteFrom(*stream, kTransferBlock, kWholePart);
        ProgressStep(*Info->Bar);
        if (Stop)
            break;
    }
    stream->Close();
    readsAhead_ = readsAhead_ || (stream->ReadsFromDisk() && stream->Position() <= kTransferBlock);
    if (failure_ == 0)
        failure_ = stream->Failure();
}

// Before the row goes, which may be the end of the program.
void claDecodeThread::TellIfNotWhole() const {
    const int failure = StreamOut->Failure() != 0 ? StreamOut->Failure() : failure_;
    const auto isThere = [](const Ref<FolderItem>& part) { return part->Exists(); };
    if (failure != 0)
        TellNotWhole(*File, failure, trashes_ && std::none_of(FileDone.begin(), FileDone.end(), isThere));
}

// What the preferences want of a finished glue. Whether the target is whole is not looked at: a gap in the numbers or
// a full disk counts as finished, and the parts go all the same. Kept on purpose, see
// docs/reading.md. Gives the file to show, nil for an archive that was launched instead.
Ref<FolderItem> claDecodeThread::Finish() {
    trashes_ = Wants(&claPreferences::MovePartsToTrash);
    if (trashes_) {
        for (const Ref<FolderItem>& part : FileDone)
            part->MoveFileTo(SpecialFolder::Trash());
    }
    if (!Wants(&claPreferences::LaunchArchives) || !IsArchive(File->Name()))
        return File;
    File->Launch(true);
    return nullptr;
}
