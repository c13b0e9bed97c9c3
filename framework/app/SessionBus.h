#pragma once

#include <string>
#include <vector>

// The program on the session bus, as org.freedesktop.Application has it: one instance serves, further starts hand their
// files to it. Without a bus each start stands alone. Main thread.

// Hands the files (absolute paths) to a running instance, or asks it to come forward if there are none. False if there
// is no instance, or it ended before it answered; then this process has become the one that serves.
bool HandOver(const std::string& programId, const std::vector<std::string>& paths);
