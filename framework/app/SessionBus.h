#pragma once

#include <optional>
#include <string>
#include <vector>

struct Activation;

// The program on the session bus, as org.freedesktop.Application has it: one instance serves, further starts hand their
// files to it. Without a bus each start stands alone. Main thread.

enum class HandedOver {
    Yes,
    No,         // no instance serves, or answers as one: this process serves, on the bus if it got the name
    Unanswered, // an instance has got the files, and may open them yet
};

// Hands the files (absolute paths) to a running instance; without a list, tells it of a start without a file. It comes
// forward either way, also when there is no file left: one that is not there is logged to standard error here, where
// the user has named it, and stays here. If no instance takes the files, none is told.
HandedOver HandOver(const std::string& programId, const std::optional<std::vector<std::string>>& paths,
                    const Activation& activation);

// Leaves what is asked from now on to the next start.
void StopServing(const std::string& programId);
