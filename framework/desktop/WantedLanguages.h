#pragma once

#include <string>
#include <vector>

// The language that programs are written in: what a system that is set to none ("C") gets.
inline constexpr const char* kPlainLanguage = "C";

// The languages that the user's desktop is set to, the most wanted first, as "de_AT" or "de"; each regional form is
// followed by its language. kPlainLanguage ends the list where it occurs. Main thread.
std::vector<std::string> WantedLanguages();
