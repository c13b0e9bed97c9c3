#pragma once

#include "framework/base/Ref.h"

#include <functional>

class Application;
class FolderItem;

// Hands open and new-document events to the application, in the order of their coming. Each comes from the event loop
// by itself, also while a modal dialog runs: one that waits for an answer of the user does not hold up those behind it.
// Main thread.
class DocumentEvents {
public:
    static DocumentEvents& Instance();

    void OpenDocument(const Ref<FolderItem>& item);
    void NewDocument();
    // Anything else that brings files.
    void Add(std::function<void(Application&)> event);

    // Whether there is anything that has not been delivered.
    bool Wait() const { return waiting_ > 0; }

private:
    int waiting_ = 0;
};
