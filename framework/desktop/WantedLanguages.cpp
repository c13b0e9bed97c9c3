#include "framework/desktop/WantedLanguages.h"

#include <glib.h>

#include <cstdlib>
#include <memory>
#include <sstream>

namespace {

bool IsPlain(const std::string& locale) {
    return locale == "C" || locale == "POSIX";
}

std::string MessagesLocale() {
    for (const char* const name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* const value = std::getenv(name);
        if (value != nullptr && *value != '\0')
            return value;
    }
    return kPlainLanguage;
}

// As for all translated programs, the list counts in a locale other than "C" only. One of colons alone names nothing.
std::string ListOfLocales() {
    const std::string locale = MessagesLocale();
    const char* const value = std::getenv("LANGUAGE");
    const std::string list = value == nullptr || IsPlain(locale) ? "" : value;
    return list.find_first_not_of(':') == std::string::npos ? locale : list;
}

// The locale's own name and the more general ones that it falls back to.
void AppendLanguages(std::vector<std::string>& languages, const std::string& locale) {
    const std::unique_ptr<char*, decltype(&g_strfreev)> variants(g_get_locale_variants(locale.c_str()), g_strfreev);
    for (const char* const* variant = variants.get(); *variant != nullptr; ++variant) {
        const std::string language = *variant;
        if (!language.empty() && language.find_first_of(".@") == std::string::npos) // no encoding, no variant
            languages.push_back(language);
    }
}

} // namespace

std::vector<std::string> WantedLanguages() {
    std::vector<std::string> languages;
    std::istringstream list(ListOfLocales());
    for (std::string locale; std::getline(list, locale, ':');) {
        if (IsPlain(locale.substr(0, locale.find('.')))) {
            languages.emplace_back(kPlainLanguage);
            break;
        }
        AppendLanguages(languages, locale);
    }
    return languages;
}
