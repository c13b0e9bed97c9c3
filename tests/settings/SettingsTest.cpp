#include "core/App.h"
#include "framework/files/SpecialFolder.h"
#include "framework/windows/Native.h"
#include "settings/Multilingual.h"
#include "settings/claPreferences.h"
#include "settings/winPreferences.h"
#include "tests/support/TestFolder.h"

#include <QCheckBox>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

TEST(Language, ReadsLinesByTheirGrammarAndFillsPlaceholdersOnceInOrder) {
    // clang-format off
    const std::pair<const char*, const char*> table[] = {
        {"Foo: a", "a"}, {"fOO: a", "a"}, {"Foo: a: b ", "a: b "}, {"Foo: ", ""}, {"Foo:", ""}, {"Foo:a", ""},
        {"Food: a", ""}, {"Foo: a\nFoo: b", "a"}, {"Foo: a\nMAC Foo: b", "a"}, {"MAC Foo: b\nFoo: a", "b"},
        {"WIN Foo: a", ""}, {"WIN Foo: a\nFoo: b", "b"}, {"MAC Foo Bar: a", "a"}, {"Foo Bar: a", ""}, {" Foo: a", ""},
        {"MAC  Foo: a", ""}, {"/*\nFoo: a\n*/\nFoo: b", "b"}, {"/*\n/*\n*/\nFoo: a", "a"}, {"*/\nFoo: a", "a"},
        {"/*\nFoo: a", ""}, {"/* \nFoo: a", "a"}, {"/*\n */\nFoo: a", ""}, {"//Foo: a\nFoo: b", "b"},
        {" //\nFoo: // a", "// a"}, {"\n\nFoo: a\n\n", "a"}, {"Bar: b\rFoo: a\r", "a"}, {"Bar: b\r\nFoo: a\r\n", "a"},
        {"\xFF: \n\xC3\nFoo: ä\xFF", "ä\xFF"}, {"\uFEFFFoo: a", ""}, {"Foo: a\\nb\\nc\\N", "a\nb\nc\\N"},
        {"Foo: <!%PLACEHOLDER#1%!> and <!%PLACEHOLDER#1%!>", "two\n and <!%PLACEHOLDER#1%!>"},
        {"Foo: <!%PLACEHOLDER#4%!><!%PLACEHOLDER#3%!><!%PLACEHOLDER#2%!>", "43two"}};
    // clang-format on
    const TestFolder folder;
    for (const auto& [content, text] : table) {
        folder.Write("strings.txt", content);
        Multilingual::LoadLanguageFile(folder.Item("strings.txt"));
        // A value may hold what comes later, and a line break as the files spell it.
        EXPECT_EQ(Multilingual::GetString("Foo", "<!%PLACEHOLDER#2%!>\\n", "two", "3", "4"), text) << content;
        EXPECT_EQ(Multilingual::GetString("//Foo"), "");
    }
    EXPECT_THROW(Multilingual::LoadLanguageFile(folder.Item("missing")), NilObjectException);
    EXPECT_EQ(Multilingual::GetString("Foo"), "") << "emptied before the file is opened";
    Multilingual::Initialize(SpecialFolder::Resources()->Child("Multilingual"), "English");
}

TEST(Language, TheSystemsIsTheFirstInTheListThatHasAFolder) {
    struct Case {
        const char *all, *messages, *lang, *list, *language;
    };
    const Case table[] = {{"", "", "", "", "English"},
                          {"C", "de_DE", "de_DE", "fr:de", "English"},
                          {"POSIX", "", "", "fr", "English"},
                          {"C.UTF-8", "", "", "fr:de", "French"},
                          {"", "de_AT.UTF-8@euro", "fr_FR", "", "German"},
                          {"it_IT", "de_AT", "fr_FR", "", "Italian"},
                          {"", "C", "de_DE", "fr", "English"},
                          {"", "", "fi_FI.UTF-8", "", ""},
                          {"", "", "de_DE.UTF-8", ":::", "German"},
                          {"", "", "de_DE.UTF-8", ":fi::fr_CA:", "French"},
                          {"", "", "de_DE.UTF-8", "fi:C", "English"},
                          {"", "", "de_DE.UTF-8", "fi:POSIX:fr", "English"},
                          {"", "", "de_DE.UTF-8", "zh_TW:zh:zh_SG", "Chinese (Simplified)"},
                          {"", "", "pt_PT.UTF-8", "", "Portuguese (Brazil)"}};
    for (const auto& [all, messages, lang, list, language] : table) {
        setenv("LC_ALL", all, 1);
        setenv("LC_MESSAGES", messages, 1);
        setenv("LANG", lang, 1);
        setenv("LANGUAGE", list, 1);
        EXPECT_EQ(Multilingual::SystemLanguage(), language) << all << ' ' << messages << ' ' << lang << ' ' << list;
    }
    setenv("LC_ALL", "C.UTF-8", 1);
    setenv("LANGUAGE", "", 1);
}

const std::string kHead = "\x22Ombrivel Preferences Version 1.0.0";
const std::string kDefaults = kHead + "\0\1\1\1\1\1"s;

fs::path PreferencesFile() {
    return SpecialFolder::Preferences()->Child("Ombrivel 1.0.0 Preferences")->AbsolutePath();
}

TEST(Preferences, AFileThatIsNotQuiteOneIsTakenForWhatItIs) {
    const std::string longest = kHead + "\xFF" + std::string(255, 'x') + "\0\0\1\0\1"s;
    const std::pair<std::string, std::string> table[] = {
        {"", kDefaults},
        {kHead.substr(0, 20), kDefaults},
        {kHead.substr(0, 34) + "1\1x\0\0\0\0\0"s, kDefaults}, // another version
        {kHead + "\5Deu", kHead + "\3Deu\0\0\0\0\0"s},
        {kHead + "\1x\1\1", kHead + "\1x\1\1\0\0\0"s}, // what is missing reads as 0
        {kHead + "\1x\0\2\xFF\1\0 and more"s, kHead + "\1x\0\1\1\1\0"s},
        {longest, longest}};
    for (const auto& [bytes, whole] : table) {
        WriteFile(PreferencesFile(), bytes);
        claPreferences preferences;
        preferences.Load();
        preferences.Language.resize(bytes == longest ? 300 : preferences.Language.size()); // cut off again
        preferences.Save();
        EXPECT_EQ(ReadFile(PreferencesFile()), whole);
    }
}

TEST(Preferences, EachBoxHasItsByteAndNoOther) {
    const char* const keys[] = {"PreferencesAutoQuit", "PreferencesLaunchArchives", "PreferencesMovePartsToTrash",
                                "PreferencesShowFilesAfter", "PreferencesSearchForUpdates"};
    for (std::size_t byte = 0; byte < std::size(keys); ++byte) {
        std::string bytes = kDefaults;
        bytes[kHead.size() + 1 + byte] = '\0';
        WriteFile(PreferencesFile(), bytes);
        const Ref<claPreferences> preferences = App::Instance()->Preferences = New<claPreferences>();
        preferences->Load();
        const Ref<winPreferences> window = winPreferences::Instance();
        QCheckBox* its = nullptr;
        for (auto* const box : window->Native().widget->findChildren<QCheckBox*>()) {
            const bool isIts = box->text().toStdString() == Multilingual::GetString(keys[byte]);
            EXPECT_EQ(box->isChecked(), !isIts) << keys[byte];
            its = isIts ? box : its;
        }
        ASSERT_NE(its, nullptr);
        for (const std::string& expected : {kDefaults, bytes}) {
            its->click();
            preferences->Save();
            EXPECT_EQ(ReadFile(PreferencesFile()), expected) << keys[byte];
        }
        window->Close();
    }
}

TEST(Preferences, AreReplacedAtOnceAndAsAWholeBehindALinkToo) {
    const TestFolder folder;
    const fs::path link = PreferencesFile();
    fs::remove(link);
    fs::create_symlink(folder.Path("file"), link);
    claPreferences preferences;
    preferences.Save(); // where nothing is yet
    EXPECT_EQ(folder.Read("file"), kDefaults);
    fs::permissions(folder.Path("file"), fs::perms(0640));
    std::ifstream older(folder.Path("file"));
    preferences.Language = "Klingon";
    {
        const FileSizeLimit limit(kDefaults.size());
        preferences.Save();
    }
    EXPECT_EQ(folder.Read("file"), kDefaults) << "where the disk is full";
    preferences.Save();
    EXPECT_EQ(folder.Read("file"), kHead + "\7Klingon\1\1\1\1\1");
    EXPECT_EQ(std::string(std::istreambuf_iterator(older), {}), kDefaults) << "for who reads it meanwhile";
    EXPECT_EQ(fs::status(folder.Path("file")).permissions(), fs::perms(0640));
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(folder.Names(), std::vector{"file"s}) << "nothing is left beside it";
    fs::remove(folder.Path("file"));
    fs::create_directory(folder.Path("file"));
    EXPECT_THROW(preferences.Save(), NilObjectException);
    fs::remove(link);
}

} // namespace
