#pragma once

#include "engine/PartArrival.h"
#include "framework/threads/Timer.h"

class Thread;

// Looks once a second whether a part has arrived, and wakes the thread that sleeps until then. Runs from its making
// until the part is there, without a limit, for as long as somebody holds it. Made on the main thread.
class claDecodeDownloadingTimer : public Timer {
public:
    // `part` is one that has been looked at and found arriving.
    claDecodeDownloadingTimer(const Ref<Thread>& parent, const PartArrival& part);

protected:
    void Event_Action() override;

private:
    Ref<Thread> Parent;
    PartArrival part_;
};
