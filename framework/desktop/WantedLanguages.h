#pragma once

#include <string>
#include <vector>

// The languages that the user's desktop is set to, the most wanted first, as "de_AT" or "de"; each regional form is
// followed by its language. Empty if the desktop is set to none ("C"). Main thread.
std::vector<std::string> WantedLanguages();
