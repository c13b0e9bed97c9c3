#include "framework/windows/WindowList.h"

#include "framework/app/Activation.h"
#include "framework/base/Immortal.h"
#include "framework/windows/Native.h"
#include "framework/windows/Window.h"

#include <QApplication>

#include <algorithm>
#include <vector>

namespace {

std::vector<Ref<Window>>& Windows() {
    static const Immortal<std::vector<Ref<Window>>> windows;
    return *windows;
}

} // namespace

Ref<Window> WindowList::InFront() {
    const QWidget* const active = QApplication::activeWindow();
    for (const Ref<Window>& window : Windows()) {
        if (active != nullptr && window->Native().widget == active)
            return window;
    }
    return nullptr;
}

void WindowList::BringToFront(const Activation& activation) {
    std::vector<Ref<Window>> windows = Windows();
    std::erase_if(windows, [](const Ref<Window>& window) { return !window->ComesForward(); });
    std::stable_sort(windows.begin(), windows.end(), [](const Ref<Window>& one, const Ref<Window>& other) {
        return one->inFrontSince_ < other->inFrontSince_;
    });
    for (const Ref<Window>& window : windows)
        window->Raise();
    QWidget* front = QApplication::activeModalWidget();
    if (front == nullptr && !windows.empty())
        front = windows.back()->Native().widget;
    if (front != nullptr)
        Activate(*front, activation);
    else
        EndBusyPointer(activation);
}

void WindowList::Add(const Ref<Window>& window) {
    Windows().push_back(window);
}

void WindowList::Remove(const Ref<Window>& window) {
    std::erase(Windows(), window);
}

bool WindowList::AnyIsAsking() {
    return std::any_of(Windows().begin(), Windows().end(), [](const Ref<Window>& window) { return window->asking_; });
}

bool WindowList::Refuse() {
    const std::vector<Ref<Window>> windows = Windows(); // which the answers may change
    return std::any_of(windows.rbegin(), windows.rend(),
                       [](const Ref<Window>& window) { return !window->Closed() && window->RefusesClose(true); });
}

void WindowList::Close() {
    const std::vector<Ref<Window>> windows = Windows();
    std::for_each(windows.rbegin(), windows.rend(), [](const Ref<Window>& window) { window->FinishClose(); });
}
