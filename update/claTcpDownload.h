#pragma once

#include "framework/windows/Window.h"
#include "update/HTTPSocket.h"

// The socket as a control of the update window. It has no logic of its own. Main thread.
class claTcpDownload : public HTTPSocket {
public:
    Ref<::Window> Window() const { return ownerWindow.Held(); }
    void SetWindow(const Ref<::Window>& window) { ownerWindow = window; }
    int32_t Index() const { return Index_; }
    void SetIndex(int32_t index) { Index_ = index; }

private:
    int32_t Index_ = 0;
    WeakRef<::Window> ownerWindow; // which holds the socket
};
