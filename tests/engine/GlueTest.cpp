#include "engine/claThread.h"
#include "framework/text/Text.h"
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
    bool Waits() const { return rows.back()->Status.starts_with("Waiting for part 2 "); }

    // Glues a part, up to the wait for another one that is still to come.
    void GlueUpToTheWait(const std::string& download) {
        rows.clear();
        folder.Write("film.mov.001", "1");
        folder.Write(download, "half of");
        Glue("film.mov.001");
        EXPECT_TRUE(WaitUntil([this] { return !rows.empty() && Waits(); }));
    }
};

TEST_F(GlueTest, JoinsTheSeriesFromItsLowestNumberToItsFirstGap) {
    const std::string longest(251, 'n');
    // What is there (a folder with a slash), the part chosen, the target, and what is in it. Each part holds the last
    // digit of its number.
    const std::tuple<Names, std::string, std::string, std::string> table[] = {
        {{"a.mov.001", "a.mov.002", "a.mov.003"}, "a.mov.003", "a.mov", "123"},
        {{"a.mov.000", "a.mov.001", "a.mov.002"}, "a.mov.001", "a.mov", "012"},
        {{"a.mov.000"}, "a.mov.000", "a.mov", "0"},
        {{"a.mov.001", "a.mov.002", "a.mov.004"}, "a.mov.004", "a.mov", "12"},
        {{"a.mov.002", "a.mov.003"}, "a.mov.002", "a.mov", ""},
        {{"a.mov", "a 1.mov", "a.mov.001"}, "a.mov.001", "a 2.mov", "1"},
        {{"a.mov/", "a.mov.001"}, "a.mov.001", "a 1.mov", "1"},
        {{"a", "a.001"}, "a.001", " 1a", "1"},
        {{"a.mov.999", "a.mov.1000"}, "a.mov.1000", "a.mov.", ""}, // a base with a point at its end fits no part
        {{"a.mov"}, "a.mov", "a", ""},                             // no part at all
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
        EXPECT_EQ(folder.Read(target) + folder.Item(target)->MacType(), glued + "????") << target;
        EXPECT_EQ(folder.Names().size(), there.size() + 1) << target;
        EXPECT_EQ(rows.back()->Name, target);
        EXPECT_EQ(rows.back()->Status, glued.empty() ? "Preparing…" : "Adding part "s + glued.back() + "…") << target;
    }
    EXPECT_TRUE(List().Info.empty());
    EXPECT_TRUE(App::Instance()->InUse.empty());
}

TEST_F(GlueTest, GivesBackSideBySideWhatWasCutSideBySide) {
    const std::string base = "film "; // and two digits, so that no name begins with another
    for (std::size_t i = 10; i < 22; ++i) {
        folder.Write(base + std::to_string(i), Pattern(2 * kMegabyte + i));
        Cut(base + std::to_string(i), "0.3");
    }
    EXPECT_TRUE(WaitForWorkers());
    EXPECT_EQ(folder.Names().size(), 12U * 8U);
    for (std::size_t i = 10; i < 22; ++i) {
        std::filesystem::remove(folder.Path(base + std::to_string(i)));
        Glue(base + std::to_string(i) + ".002");
    }
    EXPECT_TRUE(WaitForWorkers());
    for (std::size_t i = 10; i < 22; ++i)
        EXPECT_TRUE(folder.Read(base + std::to_string(i)) == Pattern(2 * kMegabyte + i)) << i;
    EXPECT_EQ(folder.Names().size(), 12U);
    EXPECT_EQ(TrashedNames().size(), 12U * 7U);
    EXPECT_EQ(rows.size(), 24U);
    EXPECT_TRUE(App::Instance()->InUse.empty());
    EXPECT_EQ(StatusText(), "0 operations running");
}

// Each part loses its fraction on the way into the sum; what that makes of the bar is accepted.
TEST_F(GlueTest, TheEstimateLosesTheFractionOfEachPart) {
    using Files = std::vector<std::pair<std::string, std::size_t>>;
    const std::tuple<Files, int32_t, int32_t> table[] = {
        {{{"a.001", kMegabyte * 3 / 2}, {"a.002", kMegabyte * 3 / 2}}, 2, 3}, // four blocks, of which one fell back
        {{{"b.001", kMegabyte - 1}, {"b.002", kMegabyte - 1}}, 0, 0},         // begins without a measure, never moves
        {{{"d.001", kMegabyte}, {"d.002", 0}, {"d.003", kMegabyte}, {"d.005", kMegabyte}},
         3,
         2}, // no step for an empty part
        {{{"c.001", kMegabyte}, {"c2.download", kMegabyte}, {"C3.123", 2 * kMegabyte}, {"c", kMegabyte}}, 4, 1}};
    int32_t maximum = 0;
    onRow = [&maximum](claFilePerformInfo& row) { maximum = row.Bar->Maximum(); };
    for (const auto& [files, estimate, atTheEnd] : table) {
        for (const auto& [name, size] : files)
            folder.WriteSparse(name, size);
        Glue(files[0].first);
        EXPECT_TRUE(WaitForWorkers());
        EXPECT_EQ(std::pair(maximum, rows.back()->Bar->Value()), std::pair(estimate, atTheEnd));
    }
}

TEST_F(GlueTest, TheEndGoesByThePreferences) {
    folder.Write("g.zip", "in the way");
    const std::tuple<std::string, bool, bool, std::string> table[] = {
        {"a.zip", true, true, "open a.zip\n"},         {"b.RAR", true, false, "open b.RAR\n"},
        {"c.zip", false, true, "reveal c.zip\n"},      {"d.zip", false, false, ""},
        {"f.zip.gz", true, true, "reveal f.zip.gz\n"}, {"g.zip", true, true, "open g 1.zip\n"}};
    for (const auto& [base, launch, show, asked] : table) {
        App::Instance()->Preferences->LaunchArchives = launch;
        App::Instance()->Preferences->ShowFilesAfter = show;
        folder.Write(base + ".001", "1");
        Glue(base + ".001");
        EXPECT_TRUE(WaitForWorkers());
        EXPECT_EQ(Replace(AskedOfDesktop(), folder.Path(""), ""), asked) << base;
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
    EXPECT_EQ(App::Instance()->InUse.size(), 2U);
    ClickStop(1);
    ClickStop(0);
    EXPECT_TRUE(WaitForWorkers());
    EXPECT_TRUE(App::Instance()->InUse.empty());
    std::filesystem::remove(folder.Path("film.mov.002.download"));
    Glue("film.mov.001"); // free again
    EXPECT_TRUE(WaitForWorkers());
    EXPECT_EQ(folder.Read("film.mov"), "1");
}

TEST_F(GlueTest, WaitsForADownloadAsLongAsItTakes) {
    GlueUpToTheWait("film.mov.002.download");
    std::filesystem::rename(folder.Path("film.mov.002.download"), folder.Path("half")); // wakes nobody by vanishing
    EXPECT_FALSE(WaitUntil([this] { return !Waits() || List().Info.empty(); }, 1100ms)) << "longer than a look takes";
    EXPECT_EQ(folder.Read("film.mov"), "1");
    folder.Write("half", "2");
    std::filesystem::rename(folder.Path("half"), folder.Path("film.mov.002"));
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_TRUE(WaitForWorkers());
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 2s);
    EXPECT_EQ(folder.Read("film.mov"), "12");
}

TEST_F(GlueTest, AStopEndsTheWaitAtOnceAndKeepsTheParts) {
    for (const char* download : {"film.mov.002.download", "film.mov.002.crdownload"}) {
        GlueUpToTheWait(download);
        const auto begin = std::chrono::steady_clock::now();
        ClickStop(0);
        EXPECT_TRUE(WaitForWorkers());
        EXPECT_LT(std::chrono::steady_clock::now() - begin, 800ms) << "sooner than the next look at the folder";
        EXPECT_EQ(folder.Names(), (Names{"film.mov.001", download}));
        std::filesystem::remove(folder.Path(download));
    }
    EXPECT_EQ(TrashedNames().size(), 2U);
    EXPECT_EQ(AskedOfDesktop(), "");
    onRow = [](claFilePerformInfo& row) { row.PerformThread->Stop = true; }; // before anybody sleeps
    folder.Write("song.001.download", "half of");
    Glue("song.001");
    EXPECT_TRUE(WaitForWorkers());
    EXPECT_EQ(folder.Names(), (Names{"film.mov.001", "song.001.download"}));
}

TEST_F(GlueTest, AStopWithinAPartKeepsThePartsWhateverThePreference) {
    folder.Write("film.mov.001", "1");
    folder.WriteSparse("film.mov.002", 64ULL << 30U);
    Glue("film.mov.001");
    EXPECT_TRUE(WaitUntil([this] { return !rows.empty() && rows[0]->Status == "Adding part 2…"; }));
    ClickStop(0);
    EXPECT_TRUE(WaitForWorkers());
    EXPECT_EQ(folder.Names(), (Names{"film.mov.001", "film.mov.002"}));
    EXPECT_EQ(TrashedNames(), Names{"film.mov"});
}

// A disk that takes no more is not noticed, and the parts go all the same. So the program is meant to be, and this is
// why the parts go to the Trash and not for good.
TEST_F(GlueTest, AFullDiskPassesForASuccess) {
    for (const char* name : {"film.mov.001", "film.mov.002", "film.mov.003"})
        folder.Write(name, Pattern(kMegabyte));
    const FileSizeLimit limit(kMegabyte + 1000);
    Glue("film.mov.001");
    EXPECT_TRUE(WaitForWorkers());
    EXPECT_TRUE(folder.Read("film.mov") == Pattern(kMegabyte) + Pattern(kMegabyte).substr(0, 1000));
    EXPECT_EQ(TrashedNames().size(), 3U);
    EXPECT_EQ(AskedOfDesktop(), "reveal " + folder.Path("film.mov") + "\n");
}

TEST_F(GlueTest, WhatCannotBeWrittenLeavesItsRowAndItsSeriesInUse) {
    App::Instance()->DecodeFile(folder.Item("missing")->Child("film.mov.001"));
    for (const char* name : {"good.001", ".001", "001", "x"}) { // the others leave no name to glue under
        folder.Write(name, "1");
        Glue(name);
    }
    EXPECT_TRUE(WaitForWorkers());
    App::Instance()->DecodeFile(folder.Item("missing")->Child("film.mov.002"));
    EXPECT_TRUE(WaitForWorkers());
    EXPECT_EQ(folder.Names(), (Names{".001", "001", "good", "x"}));
    EXPECT_EQ(rows.size(), 2U);
    ASSERT_EQ(List().Info.size(), 1U);
    EXPECT_EQ(List().Info[0]->Name, "film.mov");
    ASSERT_EQ(App::Instance()->InUse.size(), 1U);
    EXPECT_EQ(App::Instance()->InUse[0]->AbsolutePath(), folder.Path("missing/film.mov"));
}

} // namespace
