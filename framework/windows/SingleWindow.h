#pragma once

#include "framework/base/Immortal.h"
#include "framework/windows/Window.h"

// The one instance of a window class: the open one, or else a new one, made and opened but not shown. Main thread.
// Nobody stores the reference.
template <class W>
Ref<W> SingleWindow() {
    static const Immortal<Ref<W>> window;
    if (window->IsNil() || (*window)->Closed()) {
        *window = New<W>();
        (*window)->Make();
    }
    return *window;
}
