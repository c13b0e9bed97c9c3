#include "engine/claEncodeThread.h"

#include "engine/FailureNotice.h"
#include "engine/FileTypes.h"
#include "engine/PartNames.h"
#include "framework/files/BinaryStream.h"
#include "framework/files/FolderItem.h"
#include "framework/files/SpecialFolder.h"
#include "framework/files/Writeback.h"
#include "framework/text/Number.h"
#include "framework/threads/MainThread.h"
#include "framework/windows/ProgressBar.h"
#include "settings/Multilingual.h"
#include "ui/Pictures.h"
#include "ui/claFilePerform.h"
#include "ui/claFilePerformInfo.h"
#include "ui/winMain.h"

namespace {

// The name was made sure of before. What has come to stand there since (a source that grows runs into the tail of an
// older series) goes to the Trash; where it can't, there is no part.
Ref<BinaryStream> CreatePart(const FolderItem& file) {
    const std::string type = FileTypes::OmbrivelPart()->Operator_Convert();
    const Ref<BinaryStream> part = file.CreateBinaryFile(type);
    if (!part.IsNil() || !file.Exists())
        return part;
    file.MoveFileTo(SpecialFolder::Trash());
    return file.CreateBinaryFile(type);
}

} // namespace

void claEncodeThread::Event_RunThread() {
    auto reservation = std::move(Reservation); // whatever ends this body ends it too
    const Ref<claFilePerformInfo> info = AddRow();
    StreamIn->PrepareToClone(PartSize, Stop);
    const auto writeback = New<Writeback>(*Folder, Stop);
    Ref<BinaryStream> part;
    int32_t counter = 0;
    Ref<FolderItem> notWhole; // the first part that could not be written as a whole
    int failure = 0;
    do {
        if (StreamIn->AtEOF())
            break;
        ++counter;
        const Ref<FolderItem> file = Folder->Child(PartName(FileName, counter));
        part = CreatePart(*file);
        reservation = nullptr;
        info->SetStatus("MainStatusCreatingPart", counter);
        part->SetWriteback(writeback);
        FillPart(*part, *info);
        part->Close();
        FileDone.push_back(file);
        if (failure == 0 && (failure = FailureOf(*part)) != 0)
            notWhole = file;
    } while (!Stop);

    // Once more, on every path: for an empty source, which has no part, this ends the thread and leaves the row as it
    // is.
    part->Close();

    // The source may fail between two parts too, where its end is looked for: the next part is missing.
    if (failure == 0 && (failure = StreamIn->Failure()) != 0)
        notWhole = Folder->Child(PartName(FileName, counter + 1));
    const int late = writeback->WaitUntilOnDevice();
    if (failure == 0 && late != 0) {
        failure = late;
        notWhole = FileDone.at(0); // nobody knows which one it was
    }
    const bool stopped = Stop;
    if (stopped) {
        for (const Ref<FolderItem>& file : FileDone)
            file->MoveFileTo(SpecialFolder::Trash());
    }
    if (!stopped && failure != 0)
        TellNotWhole(*notWhole, failure, false);
    RunOnMainThread([&] {
        if (!stopped)
            info->FileToShow = FileDone.at(0);
        info->Close();
    });
}

// The part is not whole either where the source could not be read.
int claEncodeThread::FailureOf(const BinaryStream& part) const {
    return part.Failure() != 0 ? part.Failure() : StreamIn->Failure();
}

// The row bears the source's name, never the base.
Ref<claFilePerformInfo> claEncodeThread::AddRow() {
    const int32_t maximum = RuntimeCvtReal64ToSInt32(RuntimeCvtUInt64ToReal64(File->Length()) / double(kTransferBlock));
    const Ref<claFilePerformInfo> info = OnMainThread([&] {
        return winMain::Instance()->canPerform()->AddInfo(
            File->Name(), maximum, 0, Multilingual::GetString("MainStatusPreparing"), picIconCut(), Self(this));
    });
    Pending.reset();
    return info;
}

// A size of 0 or below moves nothing and leaves the part empty, so such a cut makes empty parts until it is stopped.
// That is accepted: nobody can pick such a size but by pasting a number out of all proportion.
//
// Counts down the size alone and never looks at the end of the source: in the last part it goes on moving nothing, one
// progress step per block, until the size is used up. Kept on purpose, see docs/reading.md.
void claEncodeThread::FillPart(BinaryStream& part, claFilePerformInfo& info) {
    int32_t remaining = PartSize;
    while (remaining != 0) {
        if (remaining >= kTransferBlock) {
            part.WriteFrom(*StreamIn, kTransferBlock, remaining - kTransferBlock);
            remaining -= kTransferBlock;
        } else {
            part.WriteFrom(*StreamIn, remaining);
            remaining = 0;
        }
        ProgressStep(*info.Bar);
        if (Stop)
            return;
    }
}
