#include "settings/Multilingual.h"

#include "framework/files/SpecialFolder.h"
#include "framework/text/Text.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

#include <set>
#include <sstream>

namespace {

class LanguageTest : public testing::Test {
protected:
    ~LanguageTest() override { Multilingual::Initialize(languages, "English"); }

    // The text of a key in a file of that content.
    std::string TextIn(const std::string& content, const std::string& key, const std::string& one = "",
                       const std::string& two = "") const {
        folder.Write("strings.txt", content);
        Multilingual::LoadLanguageFile(folder.Item("strings.txt"));
        return Multilingual::GetString(key, one, two, "3", "4");
    }

    const TestFolder folder;
    const Ref<FolderItem> languages = SpecialFolder::Resources()->Child("Multilingual");
};

TEST_F(LanguageTest, LinesAreReadByTheirGrammar) {
    // clang-format off
    const std::pair<const char*, const char*> table[] = {
        {"Foo: a", "a"}, {"fOO: a", "a"}, {"Foo: a: b ", "a: b "}, {"Foo: ", ""}, {"Foo:", ""}, {"Foo:a", ""},
        {"Food: a", ""}, {"Foo: a\nFoo: b", "a"}, {"Foo: a\nMAC Foo: b", "a"}, {"MAC Foo: b\nFoo: a", "b"},
        {"WIN Foo: a", ""}, {"WIN Foo: a\nFoo: b", "b"}, {"MAC Foo Bar: a", "a"}, {"Foo Bar: a", ""}, {" Foo: a", ""},
        {"MAC  Foo: a", ""}, {"/*\nFoo: a\n*/\nFoo: b", "b"}, {"/*\n/*\n*/\nFoo: a", "a"}, {"*/\nFoo: a", "a"},
        {"/*\nFoo: a", ""}, {"/* \nFoo: a", "a"}, {"/*\n */\nFoo: a", ""}, {"//Foo: a\nFoo: b", "b"},
        {" //\nFoo: // a", "// a"}, {"\n\nFoo: a\n\n", "a"}, {"Bar: b\rFoo: a\r", "a"}, {"Bar: b\r\nFoo: a\r\n", "a"},
        {"\xFF: \n\xC3\nFoo: ä\xFF", "ä\xFF"}, {"\uFEFFFoo: a", ""}, {"Foo: a\\nb\\nc\\N", "a\nb\nc\\N"}};
    // clang-format on
    for (const auto& [content, text] : table)
        EXPECT_EQ(TextIn(content, "Foo"), text) << content;
    EXPECT_EQ(TextIn("//Foo: a\nFoo: b", "//Foo"), "");
    EXPECT_THROW(Multilingual::LoadLanguageFile(folder.Item("missing")), NilObjectException);
    EXPECT_EQ(Multilingual::GetString("Foo"), "") << "emptied before the file is opened";
}

TEST_F(LanguageTest, APlaceholderIsFilledInOnceAndInOrder) {
    const std::string twice = "Foo: <!%PLACEHOLDER#1%!> and <!%PLACEHOLDER#1%!>";
    EXPECT_EQ(TextIn(twice, "Foo", "x"), "x and <!%PLACEHOLDER#1%!>");
    EXPECT_EQ(TextIn(twice, "Foo"), " and <!%PLACEHOLDER#1%!>");
    // A value may hold what comes later, and a line break as the files spell it.
    EXPECT_EQ(TextIn(twice, "Foo", "<!%PLACEHOLDER#2%!>\\n", "y"), "y\n and <!%PLACEHOLDER#1%!>");
    EXPECT_EQ(TextIn("Foo: <!%PLACEHOLDER#4%!><!%PLACEHOLDER#3%!><!%PLACEHOLDER#2%!>", "Foo", "1", "2"), "432");
}

// The keys of a language file that count in a build. Those whose text takes a value have a star.
std::set<std::string> KeysOf(const Ref<FolderItem>& file, const std::string& tag, const std::string& otherTag) {
    std::set<std::string> keys;
    std::istringstream lines(ReadFile(file->AbsolutePath()));
    for (std::string line; std::getline(lines, line);) {
        if (line.empty() || Left(line, 2) == "//" || Left(line, 4) == otherTag)
            continue;
        EXPECT_EQ(line.find_last_not_of(" \t\r"), line.size() - 1) << "a blank at the end of: " << line;
        EXPECT_GT(line.size(), line.find(": ") + 2) << "no text in: " << line;
        const std::string once = Replace(line, "<!%PLACEHOLDER#1%!>", "");
        EXPECT_EQ(once.find("<!%"), std::string::npos) << line;
        const std::string key = line.substr(0, line.find(": ")) + (once == line ? "" : "*");
        EXPECT_TRUE(keys.insert(Left(key, 4) == tag ? key.substr(4) : key).second) << "twice: " << line;
    }
    return keys;
}

TEST_F(LanguageTest, EveryLanguageHasTheKeysOfEnglishOnceForBothBuilds) {
    const std::set<std::string> english = KeysOf(languages->Child("English")->Child("strings.txt"), "MAC ", "WIN ");
    EXPECT_GT(english.size(), 50U);
    for (int32_t i = 1; i <= languages->Count(); ++i) {
        const Ref<FolderItem> file = languages->Item(i)->Child("strings.txt");
        EXPECT_EQ(KeysOf(file, "MAC ", "WIN "), english) << file->AbsolutePath();
        EXPECT_EQ(KeysOf(file, "WIN ", "MAC "), english) << file->AbsolutePath();
        // These two go into an address as they stand.
        Multilingual::LoadLanguageFile(file);
        EXPECT_EQ(Multilingual::GetString("SearchForUpdatesApp"), "Ombrivel") << file->AbsolutePath();
        EXPECT_LE(Multilingual::GetString("SearchForUpdatesLanguage").size(), 5U) << "a code, not a sentence";
    }
}

} // namespace
