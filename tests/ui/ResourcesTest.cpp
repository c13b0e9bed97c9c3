#include "framework/desktop/Sound.h"
#include "framework/files/ProgramFile.h"
#include "ui/Pictures.h"
#include "ui/Sounds.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

// While one of these lives, a resource is there that the program did not have when it started.
class LateResource {
public:
    explicit LateResource(const std::string& name) : path_(PathBesideProgram("../Resources/" + name)) {
        std::filesystem::remove(path_);
        std::filesystem::create_symlink(PathBesideProgram("../../Resources/" + name), path_);
    }
    ~LateResource() { std::filesystem::remove(path_); }
    LateResource(const LateResource&) = delete;
    LateResource& operator=(const LateResource&) = delete;

private:
    std::string path_;
};

// The difference is meant.
TEST(Resources, APictureThatFailedIsTriedAgainAndASoundIsNot) {
    EXPECT_TRUE(picBack().IsNil());
    EXPECT_TRUE(sndNewVersion().IsNil());
    Ref<Picture> picture;
    Ref<Sound> sound;
    {
        const LateResource back("picBack.png"), newVersion("sndNewVersion.mp3"), reset("sndResetPreferences.wav");
        picture = picBack();
        sound = sndResetPreferences();
        EXPECT_FALSE(picture.IsNil());
        EXPECT_FALSE(sound.IsNil());
        EXPECT_TRUE(sndNewVersion().IsNil());
    }
    EXPECT_EQ(picBack(), picture) << "kept, with no new look at the file";
    EXPECT_EQ(sndResetPreferences(), sound);
}

} // namespace
