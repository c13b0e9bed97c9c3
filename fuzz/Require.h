#pragma once

#include <cstdlib>

// Ends the process where something does not hold that has to.
inline void Require(bool holds) {
    if (!holds)
        std::abort();
}
