#include "bench/Operations.h"

#include "core/App.h"
#include "engine/PartNames.h"
#include "engine/StartCut.h"
#include "engine/claEncodeThread.h"
#include "framework/files/BinaryStream.h"
#include "framework/files/FolderItem.h"
#include "framework/threads/MainThread.h"
#include "framework/threads/Thread.h"

void BeginCut(const std::string& file, int32_t partSize) {
    RunOnMainThread([&] {
        const auto thread = New<claEncodeThread>();
        thread->Priority = 1;
        thread->File = New<FolderItem>(file);
        thread->PartSize = partSize;
        thread->StreamIn = thread->File->OpenAsBinaryFile(false);
        thread->Folder = thread->File->Parent();
        thread->FileName =
            FreeBaseName(*thread->Folder, thread->File->Name(), PartCount(thread->File->Length(), partSize));
        thread->Run();
    });
}

void Cut(const std::string& file, int32_t partSize) {
    BeginCut(file, partSize);
    Thread::WaitForAll();
}

void Glue(const std::string& part) {
    RunOnMainThread([&] { App::Instance()->DecodeFile(New<FolderItem>(part)); });
    Thread::WaitForAll();
}
