#include "settings/claPreferences.h"

#include "framework/files/FolderItem.h"
#include "framework/files/SpecialFolder.h"
#include "tests/support/Bytes.h"

#include <gtest/gtest.h>

namespace {

using namespace std::string_literals;

const std::string kHead = "\x22Ombrivel Preferences Version 1.0.0";

// What a file that holds these has to look like.
std::string BytesOf(const claPreferences& preferences) {
    std::string bytes = kHead + static_cast<char>(preferences.Language.size()) + preferences.Language;
    for (const bool setting : {preferences.AutoQuit, preferences.LaunchArchives, preferences.MovePartsToTrash,
                               preferences.ShowFilesAfter, preferences.SearchForUpdates})
        bytes += setting ? '\1' : '\0';
    return bytes;
}

TEST(Preferences, EachSettingHasItsByteAndAFileThatIsNotQuiteOneIsTakenForWhatItIs) {
    const std::string none = kHead + "\0\1\1\1\1\1"s;
    const std::string longest = kHead + "\xFF" + std::string(255, 'x') + "\0\0\1\0\1"s;
    const std::pair<std::string, std::string> table[] = {
        {"", none},
        {kHead.substr(0, 20), none},
        {kHead.substr(0, 34) + "1\1x\0\0\0\0\0"s, none}, // another version
        {kHead + "\5Deu", kHead + "\3Deu\0\0\0\0\0"s},
        {kHead + "\1x\1\1", kHead + "\1x\1\1\0\0\0"s}, // what is missing reads as 0
        {kHead + "\1x\0\2\xFF\1\0 and more"s, kHead + "\1x\0\1\1\1\0"s},
        {longest, longest}};
    const std::string file = SpecialFolder::Preferences()->Child("Ombrivel 1.0.0 Preferences")->AbsolutePath();
    for (const auto& [bytes, whole] : table) {
        WriteFile(file, bytes);
        const auto preferences = New<claPreferences>();
        preferences->Load();
        EXPECT_EQ(BytesOf(*preferences), whole) << bytes;
        preferences->Language.resize(bytes == longest ? 300 : preferences->Language.size()); // cut off again
        preferences->Save();
        EXPECT_EQ(ReadFile(file), whole);
    }
}

} // namespace
