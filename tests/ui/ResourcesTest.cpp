#include "framework/base/Program.h"
#include "framework/desktop/Sound.h"
#include "settings/Multilingual.h"
#include "ui/Pictures.h"
#include "ui/Sounds.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

// Resources that the program did not have when it started, on and off.
void SetLateResources(bool there) {
    for (const char* const name : {"picBack.png", "sndNewVersion.mp3", "sndResetPreferences.wav"}) {
        const std::string path = PathBesideProgram("../Resources/") + name;
        std::filesystem::remove(path);
        if (there)
            std::filesystem::create_symlink(PathBesideProgram("../../Resources/") + name, path);
    }
}

// The difference is meant.
TEST(Resources, APictureThatFailedIsTriedAgainAndASoundIsNot) {
    SetLateResources(false);
    EXPECT_TRUE(picBack().IsNil());
    EXPECT_TRUE(sndNewVersion().IsNil());
    SetLateResources(true);
    const Ref<Picture> picture = picBack();
    EXPECT_FALSE(picture.IsNil());
    EXPECT_TRUE(sndNewVersion().IsNil());
    EXPECT_FALSE(sndResetPreferences().IsNil()) << "whose first time this is";
    SetLateResources(false);
    EXPECT_EQ(picBack(), picture) << "kept, with no new look at the file";
}

TEST(Resources, ALanguageThatHasNoFolderIsNotTaken) {
    for (const auto& [wanted, taken] : {std::pair("de:en", "English"), {"de", ""}}) {
        setenv("LANGUAGE", wanted, 1);
        EXPECT_EQ(Multilingual::SystemLanguage(), taken) << wanted;
    }
}

} // namespace
