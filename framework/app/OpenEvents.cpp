#include "framework/app/OpenEvents.h"

#include "framework/app/RunningApplication.h"
#include "framework/base/EventEdge.h"
#include "framework/base/Immortal.h"
#include "framework/threads/MainThread.h"

#include <utility>

OpenEvents& OpenEvents::Instance() {
    static const Immortal<OpenEvents> events;
    return *events;
}

void OpenEvents::OpenDocument(const Ref<FolderItem>& item) {
    Add([item](Application& application) { application.Event_OpenDocument(item); });
}

void OpenEvents::NewDocument() {
    Add([](Application& application) { application.Event_NewDocument(); });
}

void OpenEvents::Add(std::function<void(Application&)> event) {
    ++waiting_;
    PostToMainThread([this, event = std::move(event)] {
        --waiting_;
        EventEdge::Run("open event", [&event] { event(*RunningApplication()); });
    });
}
