
#include "tests/support/ProgramTest.h"

#include <filesystem>

namespace {

// Writes down where files go instead of taking them there.
class RecordingApp : public App {
public:
    std::string routed;

    void DecodeFile(const Ref<FolderItem>& file) override { routed += "glue " + file->Name() + "\n"; }
    void EncodeFile(const Ref<FolderItem>& file) override { routed += "cut " + file->Name() + "\n"; }
};

class AppTest : public ProgramTest {};

TEST_F(AppTest, FilesOpenedBeforeTheStartWaitForItsEnd) {
    const Ref<FolderItem> saved = NoPreferences();
    std::filesystem::create_directory(folder.Path("folder.001"));
    const auto app = New<RecordingApp>();
    for (const char* name : {"film.mov.001", "film.mov", "folder.001"})
        app->Event_OpenDocument(folder.Item(name));
    EXPECT_EQ(app->routed, "");
    app->Event_Close();
    EXPECT_FALSE(saved->Exists()) << "only a start that was finished has something to save";
    app->Event_Open();
    app->Event_OpenDocument(folder.Item("film.mov.051")); // only a type code makes such a number a part
    EXPECT_EQ(app->routed, "glue film.mov.001\ncut film.mov\ncut folder.001\ncut film.mov.051\n");
    app->Event_Close();
    EXPECT_TRUE(saved->Exists());
    EXPECT_TRUE(app->QuitAfter);
    app->Event_NewDocument();
    EXPECT_FALSE(app->QuitAfter);
    EXPECT_FALSE(App::Instance()->QuitAfter) << "the tests were started without a file";
}

TEST_F(AppTest, ASeriesIsFreedByItsPathAlone) {
    const auto app = New<RecordingApp>();
    for (const char* name : {"a", "b", "a"})
        app->InUse.push_back(folder.Item(name));
    app->RemoveInUse(folder.Item("c"));
    EXPECT_EQ(app->InUse.size(), 3U);
    app->RemoveInUse(folder.Item("A")); // another handle, in other letters; the last one first
    ASSERT_EQ(app->InUse.size(), 2U);
    EXPECT_EQ(app->InUse[0]->Name() + app->InUse[1]->Name(), "ab");
}

} // namespace
