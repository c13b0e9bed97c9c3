#include "framework/windows/DocumentEvents.h"

#include "framework/app/Application.h"
#include "framework/base/Immortal.h"
#include "framework/threads/ExceptionBoundary.h"
#include "framework/threads/MainThread.h"

#include <utility>

DocumentEvents& DocumentEvents::Instance() {
    static const Immortal<DocumentEvents> events;
    return *events;
}

void DocumentEvents::OpenDocument(const Ref<FolderItem>& item) {
    Add([item](Application& application) { application.Event_OpenDocument(item); });
}

void DocumentEvents::NewDocument() {
    Add([](Application& application) { application.Event_NewDocument(); });
}

void DocumentEvents::Add(std::function<void(Application&)> event) {
    ++waiting_;
    PostToMainThread([this, event = std::move(event)] {
        --waiting_;
        ExceptionBoundary::Run("open event", [&event] { event(*RunningApplication()); });
    });
}
