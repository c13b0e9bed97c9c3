#pragma once

#include "framework/base/Ref.h"

#include <deque>
#include <functional>

class Application;
class FolderItem;

// Hands open and new-document events to the application, one at a time and in order. They wait while a modal dialog
// runs: a second dialog on top of the first would ask about a file that the user has not seen coming. Main thread.
class OpenEvents {
public:
    static OpenEvents& Instance();

    void OpenDocument(const Ref<FolderItem>& item);
    void NewDocument();
    // Anything else that brings files. Delivered from the event loop, never at once.
    void AddLater(std::function<void(Application&)> event);

    // Whether there is anything that has not been delivered.
    bool Wait() const { return !waiting_.empty(); }

    // Delivers what waits, unless a modal dialog runs or the application is not there yet.
    void Deliver();

    void ModalRunBegan() { ++modalRuns_; }
    void ModalRunEnded();

private:
    void Add(std::function<void(Application&)> event);
    void DeliverLater();

    std::deque<std::function<void(Application&)>> waiting_;
    int modalRuns_ = 0;
    bool delivering_ = false; // the events behind the one under way wait for it
};
