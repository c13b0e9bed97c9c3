#pragma once

#include "fuzz/torture/World.h"

#include <set>
#include <string>
#include <vector>

namespace Torture {

// A row of the list, as the engine tells of it.
struct Row {
    bool cuts = false;
    std::string name;
    std::string base;
    int64_t partSize = 0;
    bool ended = false, stopped = false;
};

// What is known of a session that is over.
struct Facts {
    std::vector<Row> rows;
    std::set<std::pair<std::string, uint32_t>> cuts; // asked for: source and size of a part
    bool seesRows = true;
    std::set<std::string> glued; // where rows are not seen: bases of which a glue came to its end
    bool trashesParts = false;
    bool brokenOff = false; // killed, or quit while rows stood
    bool lostBytes = false; // calls failed, or there was no room, so that files may lack some
    std::string asked;      // of the desktop
    std::vector<std::string> trashes;
};

// What does not hold of the folder that has to, one line each. Tells the world what has gone to the Trash.
std::vector<std::string> Judge(World& world, const Facts& facts);

} // namespace Torture
