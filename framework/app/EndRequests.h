#pragma once

#include <functional>

// What ends the program from outside. Each is called once, at the start, on the main thread.

// SIGTERM, SIGINT and SIGHUP: `end` runs on the main thread from the event loop. SIGXFSZ and SIGPIPE are ignored from
// here on: a size limit or a closed pipe is a failed write.
void ListenToEndSignals(const std::function<void()>& end);

// Has the end of the desktop session ask the windows like any other quit.
void AnswerEndOfSession();
