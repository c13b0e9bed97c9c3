// The language files have the texts that the program asks for, all of them and no others. Built for both variants.

#include "framework/base/Program.h"
#include "framework/files/SpecialFolder.h"
#include "settings/Multilingual.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <regex>
#include <set>

namespace {

namespace fs = std::filesystem;

using Words = std::set<std::string>;

Ref<FolderItem> Languages() {
    return SpecialFolder::Resources()->Child("Multilingual");
}

Words Matches(const std::string& text, const std::regex& pattern) {
    Words found;
    for (auto match = std::sregex_iterator(text.begin(), text.end(), pattern); match != std::sregex_iterator(); ++match)
        found.insert(match->str(1));
    return found;
}

// Of both variants.
Words KeysOfEnglish() {
    const std::string file = ReadFile(Languages()->Child("English")->Child("strings.txt")->AbsolutePath());
    return Matches(file, std::regex("(?:^|\n)(?:MAC |WIN )?(\\w+): "));
}

TEST(LanguageFiles, EnglishHasTheKeysThatTheProgramAsksForAndNoOther) {
    const std::regex asks(R"x((?:GetString|Status)\(\s*"([A-Z]\w+)")x");
    const fs::path root = fs::canonical(SpecialFolder::Resources()->AbsolutePath()).parent_path();
    Words asked;
    for (const char* const folder : {"core", "engine", "settings", "ui", "update"}) {
        for (const std::string& name : NamesIn(root / folder))
            asked.merge(Matches(ReadFile(root / folder / name), asks));
    }
    EXPECT_EQ(asked.erase("SearchForUpdates"), 1U); // the update server names the rest
    asked.insert("SearchForUpdatesVersion");
    EXPECT_EQ(asked, KeysOfEnglish());
}

// The keys that take a value are the same ones too.
TEST(LanguageFiles, EveryLanguageHasTheTextsOfEnglish) {
    const Ref<FolderItem> languages = Languages();
    std::map<std::string, bool> takesValue;
    for (const std::string& key : KeysOfEnglish())
        takesValue[key] = Multilingual::GetString(key, "#") != Multilingual::GetString(key);
    for (int32_t i = 1; i <= languages->Count(); ++i) {
        const std::string language = languages->Item(i)->Name();
        Multilingual::Initialize(languages, language);
        for (const auto& [key, takes] : takesValue) {
            const std::string text = Multilingual::GetString(key, "#");
            EXPECT_EQ(text != Multilingual::GetString(key), takes) << language << ": " << key;
            EXPECT_TRUE(!text.empty() && text.find("<!%") == std::string::npos) << language << ": " << key;
        }
        // These two go into an address as they stand. The language is found by the name that it has there.
        EXPECT_EQ(Multilingual::GetString("SearchForUpdatesApp"), "Ombrivel") << language;
        setenv("LANGUAGE", Multilingual::GetString("SearchForUpdatesLanguage").c_str(), 1);
        EXPECT_EQ(Multilingual::SystemLanguage(), language);
    }
    setenv("LANGUAGE", "", 1);
    Multilingual::Initialize(languages, "English");
    EXPECT_EQ(Multilingual::GetString("ButtonQuit"), kWindowsVariant ? "Exit" : "Quit");
}

} // namespace
