#pragma once

#include <string_view>
#include <utility>

// The edge between the framework and the program's code. Whatever leaves the program's code as an exception ends here:
// the event (or thread) is over, standard error gets one line, and the process lives on.
class ExceptionBoundary {
public:
    // Runs an event of the program. Returns false if an exception ended it. `where` names the event in that line.
    template <class Event>
    static bool Run(std::string_view where, Event&& event) noexcept {
        return Guarded(where, Logging::Always, std::forward<Event>(event));
    }

    // The same for an event that comes again and again (a paint, a tick): one and the same line is logged once in a
    // run.
    template <class Event>
    static bool RunRepeated(std::string_view where, Event&& event) noexcept {
        return Guarded(where, Logging::Once, std::forward<Event>(event));
    }

private:
    enum class Logging { Always, Once };

    template <class Event>
    static bool Guarded(std::string_view where, Logging logging, Event&& event) noexcept {
        try {
            Begin();
            std::forward<Event>(event)();
            return true;
        } catch (...) {
            Report(where, logging);
            return false;
        }
    }

    static void Begin();
    // Writes the line about the exception in flight.
    static void Report(std::string_view where, Logging logging) noexcept;
};
