#include "framework/windows/OpenWindows.h"

#include "framework/base/Immortal.h"
#include "framework/windows/Native.h"
#include "framework/windows/Window.h"

#include <QApplication>

#include <algorithm>

namespace {

std::vector<Ref<Window>>& Windows() {
    static const Immortal<std::vector<Ref<Window>>> windows;
    return *windows;
}

} // namespace

std::vector<Ref<Window>> OpenWindows::All() {
    return Windows();
}

Ref<Window> OpenWindows::InFront() {
    const QWidget* const active = QApplication::activeWindow();
    for (const Ref<Window>& window : Windows()) {
        if (active != nullptr && NativeWindow::Of(*window).widget == active)
            return window;
    }
    return nullptr;
}

void OpenWindows::Add(const Ref<Window>& window) {
    Windows().push_back(window);
}

void OpenWindows::Remove(const Ref<Window>& window) {
    std::erase(Windows(), window);
}

bool OpenWindows::AnyIsAsking() {
    return std::any_of(Windows().begin(), Windows().end(), [](const Ref<Window>& window) { return window->asking_; });
}

bool OpenWindows::Refuse() {
    const std::vector<Ref<Window>> windows = All(); // which the answers may change
    return std::any_of(windows.rbegin(), windows.rend(),
                       [](const Ref<Window>& window) { return !window->Closed() && window->RefusesClose(true); });
}

void OpenWindows::Close() {
    const std::vector<Ref<Window>> windows = All();
    std::for_each(windows.rbegin(), windows.rend(), [](const Ref<Window>& window) { window->FinishClose(); });
}
