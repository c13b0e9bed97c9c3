#pragma once

#include <string_view>
#include <utility>

// The edge between the framework and the program's code. Whatever leaves the program's code as an exception ends here:
// the event (or thread) is over, standard error gets one line, and the process lives on.
class EventEdge {
public:
    // Runs an event of the program. Returns false if an exception ended it. `where` names the event in that line.
    template <class Event>
    static bool Run(std::string_view where, Event&& event) noexcept {
        try {
            Begin();
            std::forward<Event>(event)();
            return true;
        } catch (...) {
            Report(where);
            return false;
        }
    }

private:
    static void Begin();
    // Writes the line about the exception in flight; each event's line is written once in a run, not per occurrence.
    static void Report(std::string_view where) noexcept;
};
