#include "framework/windows/ModalRun.h"

#include "framework/base/Immortal.h"
#include "framework/threads/MainThread.h"

#include <cstddef>
#include <deque>
#include <utility>

namespace {

int running = 0;

std::deque<std::function<void()>>& Waiting() {
    static const Immortal<std::deque<std::function<void()>>> waiting;
    return *waiting;
}

// Another dialog may have come up since this was posted. Its end posts anew.
void MakeNextCall() {
    if (running > 0 || Waiting().empty())
        return;
    const std::function<void()> call = std::move(Waiting().front());
    Waiting().pop_front();
    call();
}

} // namespace

ModalRun::ModalRun() {
    ++running;
}

ModalRun::~ModalRun() {
    if (--running > 0)
        return;
    for (std::size_t i = 0; i < Waiting().size(); ++i)
        PostToMainThread(MakeNextCall);
}

bool ModalRun::Any() {
    return running > 0;
}

void ModalRun::After(std::function<void()> call) {
    Waiting().push_back(std::move(call));
    if (running == 0)
        PostToMainThread(MakeNextCall);
}
