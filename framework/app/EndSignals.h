#pragma once

#include <functional>

// SIGTERM, SIGINT and SIGHUP: `end` runs on the main thread from the event loop. SIGXFSZ and SIGPIPE are ignored from
// here on: a size limit or a closed pipe is a failed write. Main thread, once.
void ListenToEndSignals(const std::function<void()>& end);
