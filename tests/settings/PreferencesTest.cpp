#include "settings/claPreferences.h"

#include "framework/files/BinaryStream.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

using namespace std::string_literals;

const std::string kHead = "\x22Ombrivel Preferences Version 1.0.0";

// Language and the five settings as they are read, in the order of the file.
std::string Loaded() {
    const auto loaded = New<claPreferences>();
    loaded->Load();
    std::string text = loaded->Language + ":";
    for (const bool setting : {loaded->AutoQuit, loaded->LaunchArchives, loaded->MovePartsToTrash,
                               loaded->ShowFilesAfter, loaded->SearchForUpdates})
        text += setting ? '1' : '0';
    return text;
}

TEST(Preferences, EachSettingHasItsByteInTheFile) {
    const Ref<FolderItem> file = NoPreferences();
    EXPECT_EQ(Loaded(), ":11111");
    EXPECT_FALSE(file->Exists()) << "reading makes no file";
    bool claPreferences::*const settings[] = {&claPreferences::AutoQuit, &claPreferences::LaunchArchives,
                                              &claPreferences::MovePartsToTrash, &claPreferences::ShowFilesAfter,
                                              &claPreferences::SearchForUpdates};
    for (std::size_t i = 0; i < 5; ++i) {
        const auto preferences = New<claPreferences>();
        (*preferences).*settings[i] = false;
        preferences->Language = i == 0 ? std::string(300, 'x') : "Français"; // cut off at what its length byte can say
        preferences->Save();
        std::string flags = "\1\1\1\1\1", expected = ":11111";
        flags[i] = '\0';
        expected[i + 1] = '0';
        const std::string language = preferences->Language.substr(0, 255);
        std::string bytes = kHead;
        bytes.append(1, char(language.size())).append(language).append(flags);
        EXPECT_TRUE(ReadFile(file->AbsolutePath()) == bytes) << i;
        EXPECT_EQ(Loaded(), language + expected);
    }
    std::filesystem::remove(file->AbsolutePath());
    std::filesystem::create_directory(file->AbsolutePath());
    EXPECT_THROW(New<claPreferences>()->Save(), NilObjectException);
    NoPreferences();
}

TEST(Preferences, AFileThatIsNotQuiteOneIsTakenForWhatItIs) {
    const std::pair<std::string, const char*> table[] = {{"", ":11111"},
                                                         {kHead.substr(0, 20), ":11111"},
                                                         {kHead.substr(0, 34) + "1\1x\0\0\0\0\0"s, ":11111"},
                                                         {kHead, ":00000"},
                                                         {kHead + "\5Deu", "Deu:00000"},
                                                         {kHead + "\1x\1\1", "x:11000"}, // what is missing reads as 0
                                                         {kHead + "\1x\0\2\xFF\1\0 and more"s, "x:01110"}};
    const Ref<FolderItem> file = NoPreferences();
    for (const auto& [bytes, loaded] : table) {
        file->CreateBinaryFile("")->Write(bytes);
        EXPECT_EQ(Loaded(), loaded) << bytes;
        EXPECT_TRUE(ReadFile(file->AbsolutePath()) == bytes);
    }
    NoPreferences();
}

} // namespace
