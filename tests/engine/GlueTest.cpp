#include "engine/claThread.h"
#include "framework/windows/ProgressBar.h"
#include "settings/claPreferences.h"
#include "tests/support/ProgramTest.h"

#include <filesystem>

namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
using Names = std::vector<std::string>;

constexpr std::size_t kMegabyte = 1048576;

class GlueTest : public ProgramTest {
protected:
    bool Waits() const { return !rows.empty() && rows.back()->Status.starts_with("Waiting for part 2 "); }

    // Glues a part, up to the wait for another one that is still to come.
    void GlueUpToTheWait(const std::string& download) {
        rows.clear();
        folder.Write("film.mov.001", "1");
        folder.Write(download, "half of");
        Glue("film.mov.001");
        EXPECT_TRUE(WaitUntil([this] { return Waits(); }));
    }
};

TEST_F(GlueTest, JoinsTheSeriesFromItsLowestNumberToItsFirstGap) {
    const std::string longest(251, 'n');
    // What is there (a folder with a slash), the part chosen, the target, and what is in it. Each part holds the last
    // digit of its number.
    const std::tuple<Names, std::string, std::string, std::string> table[] = {
        {{"a.RAR.001", "a.RAR.002", "a.RAR.003"}, "a.RAR.003", "a.RAR", "123"},
        {{"a.zip.000", "a.zip.001", "a.zip.002"}, "a.zip.001", "a.zip", "012"},
        {{"a.mov.001", "a.mov.002", "a.mov.004"}, "a.mov.004", "a.mov", "12"},
        {{"a.mov.002", "a.mov.003"}, "a.mov.002", "a.mov", ""},
        {{"my.a.mov", "my 1.a.mov", "my.a.mov.001"}, "my.a.mov.001", "my 2.a.mov", "1"}, // before the first point
        {{"a.mov/", "a.mov.001"}, "a.mov.001", "a 1.mov", "1"},
        {{"a", "a.001"}, "a.001", " 1a", "1"},
        {{"a.mov.999", "a.mov.1000"}, "a.mov.1000", "a.mov.", ""}, // a base with a point at its end fits no part
        {{"€𝄞.€\xFFx"}, "€𝄞.€\xFFx", "€𝄞", ""},                    // no part at all: characters go, not bytes
        {{"a\xFF\n.001", "a\xFF\n.002"}, "a\xFF\n.002", "a\xFF\n", "12"},
        {{longest + ".001"}, longest + ".001", longest, "1"}};
    App::Instance()->Preferences->MovePartsToTrash = false;
    for (const auto& [there, chosen, target, glued] : table) {
        for (const std::string& name : folder.Names())
            std::filesystem::remove(folder.Path(name));
        for (const std::string& name : there) {
            if (name.ends_with('/'))
                std::filesystem::create_directory(folder.Path(name));
            else
                folder.Write(name, name.substr(name.size() - 1));
        }
        Glue(chosen);
        EXPECT_TRUE(WaitForWorkers());
        EXPECT_TRUE(folder.Item(target)->Exists()) << target;
        EXPECT_EQ(folder.Read(target), glued) << target;
        EXPECT_EQ(folder.Names().size(), there.size() + 1) << target;
        const std::string verb = target == "a.RAR" || target == "a.zip" ? "open " : "reveal ";
        EXPECT_EQ(AskedOfDesktop(), verb + folder.Path(target) + "\n");
        EXPECT_EQ(rows.back()->Status, glued.empty() ? "Preparing…" : "Adding part "s + glued.back() + "…") << target;
    }
}

TEST_F(GlueTest, GivesBackSideBySideWhatWasCutSideBySide) {
    constexpr std::size_t kFiles = 12;
    const auto name = [](std::size_t i) { return "film " + std::to_string(10 + i); }; // none begins with another
    for (std::size_t i = 0; i < kFiles; ++i) {
        folder.Write(name(i), Pattern(2 * kMegabyte + i));
        Cut(name(i), "0.3");
    }
    EXPECT_TRUE(WaitForWorkers());
    for (std::size_t i = 0; i < kFiles; ++i) {
        std::filesystem::remove(folder.Path(name(i)));
        Glue(name(i) + ".002");
    }
    EXPECT_TRUE(WaitForWorkers());
    for (std::size_t i = 0; i < kFiles; ++i)
        EXPECT_TRUE(folder.Read(name(i)) == Pattern(2 * kMegabyte + i)) << i;
    EXPECT_EQ(folder.Names().size(), kFiles);
    EXPECT_EQ(TrashedNames().size(), kFiles * 7);
    EXPECT_EQ(StatusText(), "0 operations running");
}

// Each part loses its fraction on the way into the sum; what that makes of the bar is accepted.
TEST_F(GlueTest, TheEstimateLosesTheFractionOfEachPart) {
    using Files = std::vector<std::pair<std::string, std::size_t>>;
    const std::tuple<Files, int32_t, int32_t> table[] = {
        {{{"a.001", kMegabyte * 3 / 2}, {"a.002", kMegabyte * 3 / 2}}, 2, 3}, // four blocks, of which one fell back
        {{{"b.001", kMegabyte - 1}, {"b.002", kMegabyte - 1}}, 0, 0},         // begins without a measure, never moves
        {{{"d.001", kMegabyte}, {"d.002", 0}, {"d.004.DOWNLOAD", kMegabyte}, {"D2.123", kMegabyte}}, 3, 1},
        {{{"e.001", kMegabyte}, {"e", kMegabyte}, {"e.part", kMegabyte}, {"my e.001", kMegabyte}}, 1, 1}};
    int32_t maximum = 0;
    onRow = [&maximum](claFilePerformInfo& row) { maximum = row.Bar->Maximum(); };
    for (const auto& [files, estimate, atTheEnd] : table) {
        for (const auto& [name, size] : files)
            folder.WriteSparse(name, size);
        Glue(files[0].first);
        EXPECT_TRUE(WaitForWorkers());
        EXPECT_EQ(std::pair(maximum, rows.back()->Bar->Value()), std::pair(estimate, atTheEnd)) << files[0].first;
    }
}

// By prefix and without regard to case: wider than the one series, and meant.
TEST_F(GlueTest, ASeriesThatIsBeingGluedIsTurnedAway) {
    const TestFolder elsewhere;
    elsewhere.Write("film.mov.001.download", "x");
    GlueUpToTheWait("film.mov.002.download");
    for (const char* name : {"film.mov.001", "film.mov.002", "film.mov2.001", "Film.MOV.001"})
        Glue(name);
    App::Instance()->DecodeFile(elsewhere.Item("film.mov.001"));
    Glue("film.mo.001"); // its base is the shorter one
    EXPECT_TRUE(WaitUntil([this] { return rows.size() == 3 && List().Info.size() == 2; }));
    ClickStop(0);
    EXPECT_TRUE(WaitUntil([this] { return List().Info.size() == 1; }));
    ASSERT_EQ(App::Instance()->InUse.size(), 1U);
    EXPECT_EQ(App::Instance()->InUse[0]->AbsolutePath(), elsewhere.Path("film.mov"));
    std::filesystem::remove(folder.Path("film.mov.002.download"));
    Glue("film.mov.001"); // free again
    ClickStop(0);
    EXPECT_TRUE(WaitForWorkers());
    EXPECT_EQ(folder.Read("film.mov"), "1");
}

TEST_F(GlueTest, WaitsForADownloadAsLongAsItTakes) {
    GlueUpToTheWait("film.mov.002.crdownload");
    std::filesystem::rename(folder.Path("film.mov.002.crdownload"), folder.Path("half")); // wakes nobody by vanishing
    EXPECT_FALSE(WaitUntil([this] { return !Waits() || List().Info.empty(); }, 1100ms)) << "longer than a look takes";
    EXPECT_EQ(folder.Read("film.mov"), "1");
    std::filesystem::rename(folder.Path("half"), folder.Path("film.mov.002"));
    EXPECT_TRUE(WaitForWorkers());
    EXPECT_EQ(folder.Read("film.mov"), "1half of");
}

TEST_F(GlueTest, AStopEndsAWaitAtOnceAndAPartInItsMiddleAndKeepsTheParts) {
    GlueUpToTheWait("film.mov.002.download");
    const auto begin = std::chrono::steady_clock::now();
    ClickStop(0);
    EXPECT_TRUE(WaitForWorkers());
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 800ms) << "sooner than the next look at the folder";
    folder.WriteSparse("film.mov.002", 64ULL << 30U);
    Glue("film.mov.001");
    EXPECT_TRUE(WaitUntil([this] { return rows.back()->Status == "Adding part 2…"; }));
    ClickStop(0);
    EXPECT_TRUE(WaitForWorkers());
    onRow = [](claFilePerformInfo& row) { row.PerformThread->Stop = true; }; // before anybody sleeps
    folder.Write("song.001.download", "half of");
    Glue("song.001");
    EXPECT_TRUE(WaitForWorkers());
    EXPECT_EQ(folder.Names(), (Names{"film.mov.001", "film.mov.002", "film.mov.002.download", "song.001.download"}));
    EXPECT_EQ(TrashedNames().size(), 3U);
    EXPECT_EQ(AskedOfDesktop(), "");
}

// A disk that takes no more is not noticed, and the parts go all the same. So the program is meant to be, and this is
// why the parts go to the Trash and not for good.
TEST_F(GlueTest, AFullDiskPassesForASuccess) {
    App::Instance()->Preferences->LaunchArchives = false;
    for (const char* name : {"film.zip.001", "film.zip.002", "film.zip.003"})
        folder.Write(name, Pattern(kMegabyte));
    const FileSizeLimit limit(kMegabyte + 1000);
    Glue("film.zip.001");
    EXPECT_TRUE(WaitForWorkers());
    EXPECT_TRUE(folder.Read("film.zip") == Pattern(kMegabyte) + Pattern(kMegabyte).substr(0, 1000));
    EXPECT_EQ(TrashedNames().size(), 3U);
    EXPECT_EQ(AskedOfDesktop(), "reveal " + folder.Path("film.zip") + "\n");
}

TEST_F(GlueTest, WhatCannotBeWrittenLeavesItsRowAndItsSeriesInUse) {
    for (const char* name : {".001", "001", "x"}) { // leave no name to glue under
        folder.Write(name, "1");
        Glue(name);
    }
    for (const char* part : {"/proc/film.mov.001", "/proc/film.mov.002"}) { // where no file can be made
        App::Instance()->DecodeFile(New<FolderItem>(part));
        EXPECT_TRUE(WaitForWorkers());
    }
    EXPECT_EQ(folder.Names(), (Names{".001", "001", "x"}));
    EXPECT_EQ(rows.size(), 1U);
    EXPECT_EQ(List().Info, rows);
    ASSERT_EQ(App::Instance()->InUse.size(), 1U);
    EXPECT_EQ(App::Instance()->InUse[0]->AbsolutePath(), "/proc/film.mov");
}

} // namespace
