#pragma once

#include <string>

// Draws texts from now on with the characters as the language of that code ("ja", "zh_CN") writes them, also where the
// system is set to another one. Main thread.
void UseFontOfLanguage(const std::string& code);
