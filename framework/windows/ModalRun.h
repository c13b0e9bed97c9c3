#pragma once

#include <functional>

// Lives around every run of a modal dialog, and around whatever else must not be met by another dialog. Main thread.
class ModalRun {
public:
    ModalRun();
    ~ModalRun();
    ModalRun(const ModalRun&) = delete;
    ModalRun& operator=(const ModalRun&) = delete;

    static bool Any();

    // Makes the call from the event loop as soon as no modal dialog runs; several in the order of their coming. For a
    // dialog that the user has not asked for: on top of another it would ask about what he has not seen coming.
    static void After(std::function<void()> call);
};
