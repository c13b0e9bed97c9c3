#include "framework/app/OpenEvents.h"

#include "framework/app/RunningApplication.h"
#include "framework/base/EventEdge.h"
#include "framework/threads/MainThread.h"

OpenEvents& OpenEvents::Instance() {
    static OpenEvents events;
    return events;
}

void OpenEvents::OpenDocument(const Ref<FolderItem>& item) {
    Add([item](Application& application) { application.Event_OpenDocument(item); });
}

void OpenEvents::NewDocument() {
    Add([](Application& application) { application.Event_NewDocument(); });
}

void OpenEvents::Add(std::function<void(Application&)> event) {
    waiting_.push_back(std::move(event));
    Deliver();
}

void OpenEvents::AddLater(std::function<void(Application&)> event) {
    waiting_.push_back(std::move(event));
    DeliverLater();
}

void OpenEvents::Deliver() {
    const Ref<Application> application = RunningApplication();
    if (delivering_)
        return;
    delivering_ = true;
    while (!application.IsNil() && modalRuns_ == 0 && !waiting_.empty()) {
        const auto event = std::move(waiting_.front());
        waiting_.pop_front();
        EventEdge::Run("open event", [&] { event(*application); });
    }
    delivering_ = false;
}

void OpenEvents::ModalRunEnded() {
    if (--modalRuns_ == 0 && !waiting_.empty())
        DeliverLater();
}

void OpenEvents::DeliverLater() {
    PostToMainThread([this] { Deliver(); });
}
