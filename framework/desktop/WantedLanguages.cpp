#include "framework/desktop/WantedLanguages.h"

#include <glib.h>

std::vector<std::string> WantedLanguages() {
    std::vector<std::string> languages;
    for (const char* const* name = g_get_language_names(); *name != nullptr; ++name) {
        const std::string language = *name;
        const bool plain = language.find_first_of(".@") == std::string::npos; // no encoding, no variant
        if (plain && language != "C" && language != "POSIX")
            languages.push_back(language);
    }
    return languages;
}
