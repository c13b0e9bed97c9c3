#include "engine/PartNames.h"
#include "engine/StartCut.h"
#include "engine/claThread.h"
#include "framework/desktop/Desktop.h"
#include "framework/windows/ComboBox.h"
#include "framework/windows/ProgressBar.h"
#include "settings/claPreferences.h"
#include "tests/support/ProgramTest.h"

#include <QApplication>
#include <QTimer>

#include <filesystem>
#include <fstream>

namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
using Names = std::vector<std::string>;

constexpr std::size_t kMegabyte = 1048576;

class CutTest : public ProgramTest {
protected:
    // Whether the series consists of those bytes in slices of that size, and of nothing more.
    bool HoldsSlices(const std::string& base, const std::string& bytes, std::size_t size) const {
        int32_t number = 1;
        for (std::size_t at = 0; at < bytes.size(); at += size)
            if (folder.Read(PartName(base, number++)) != bytes.substr(at, size))
                return false;
        return !folder.Item(PartName(base, number))->Exists() && !folder.Item(PartName(base, 0))->Exists();
    }
};

// One step per write, whatever its size: small parts run past the bar's measure, and so does a size beyond 32 bits,
// which goes on stepping when the data is out. Both are meant.
TEST_F(CutTest, PartsAreThePlainSlicesOfTheSource) {
    const std::tuple<std::size_t, const char*, std::size_t, int32_t> table[] = {
        {4 * kMegabyte, "2", 2 * kMegabyte, 4},
        {3 * kMegabyte, "1.44", 1509949, 5},
        {3 * kMegabyte + 1, "0.25", kMegabyte / 4, 12},
        {3 * kMegabyte + 3, "1e30", INT32_MAX, 2047}};
    for (const auto& [size, megabytes, partSize, steps] : table) {
        const std::string name = "film " + std::to_string(size) + ".mov";
        folder.Write(name, Pattern(size));
        Cut(name, megabytes);
        EXPECT_TRUE(WaitForWorkers());
        EXPECT_TRUE(HoldsSlices(name, Pattern(size), partSize)) << name;
        EXPECT_TRUE(folder.Read(name) == Pattern(size)) << name;
        EXPECT_EQ(rows.back()->Bar->Value(), steps) << name;
        EXPECT_EQ(rows.back()->Status, "Creating part " + std::to_string((size - 1) / partSize + 1) + "…");
    }
    EXPECT_EQ(StatusText(), "0 operations running");
}

// No part, no message: the worker ends and its row stays as it was. Others run on.
TEST_F(CutTest, WhatCannotBeCutLeavesItsRow) {
    const std::string tooLong(255, 'n'); // no room for the number of a part
    folder.Write("empty", "");
    folder.Write("film", "x");
    folder.Write(tooLong, "x");
    std::filesystem::create_directory(folder.Path("folder"));
    App::Instance()->EncodeFile(New<FolderItem>("/")); // no dialog at all
    for (const std::string& name : {"empty"s, "folder"s, "gone"s, tooLong, "film"s})
        Cut(name, "1");
    EXPECT_TRUE(WaitForWorkers());
    EXPECT_EQ(folder.Names(), (Names{"empty", "film", "film.001", "folder", tooLong}));
    EXPECT_EQ(StatusText(), "4 operations running");
}

// Where parts are in the way, numbers pile up; and only the numbers that the new series will use count.
TEST_F(CutTest, FindsABaseThatNoPartIsInTheWayOf) {
    for (const char* name :
         {"a.mov", "a.mov.000", "a.mov.004", "b.mov.003", "b 1.mov.002", "c.001", "d.12345", "d 1.x", "e.1"})
        folder.Write(name, "");
    std::filesystem::create_symlink("nowhere", folder.Path(" 1c.001")); // in the way like anything else
    const std::tuple<std::string, int32_t, std::string> table[] = {
        {"a.mov", 3, "a.mov"},         {"a.mov", 4, "a 1.mov"},   {"b.mov", 2, "b.mov"},
        {"b.mov", 3, "b 1 2.mov"},     {"c", 1, " 2 1c"},         {"c", -1, "c"},
        {"b.mov", 99999, "b 1 2.mov"}, {"c", INT32_MAX, " 2 1c"}, {"d", 12344, "d"},
        {"d", 12345, " 1d"},           {"e", 99999, "e"},         {"D", 99999, "D"}};
    for (const auto& [name, count, base] : table)
        EXPECT_EQ(FreeBaseName(*New<FolderItem>(folder.Path()), name, count), base) << count;
}

// As by a source that grows, or by another program. A name that is too long for the Trash stays, and ends the cut.
TEST_F(CutTest, WhatComesToStandUnderAPartsNameGoesToTheTrash) {
    const std::string film = Pattern(2 * kMegabyte);
    const std::string longest(251, 'n');
    onRow = [&](claFilePerformInfo& row) {
        folder.Write(row.Name + ".001", "foreign");
        if (row.Name == longest)
            return;
        std::filesystem::create_symlink("document", folder.Path("film.002"));
        std::filesystem::create_symlink("nowhere", folder.Path("film.003"));
        std::filesystem::create_directories(folder.Path("film.004/inside"));
    };
    for (const std::string& name : {"film"s, longest}) {
        folder.Write(name, film);
        folder.Write("document", "of the user");
        Cut(name, "0.5");
        EXPECT_TRUE(WaitForWorkers());
    }
    EXPECT_TRUE(HoldsSlices("film", film, kMegabyte / 2));
    EXPECT_EQ(folder.Read("document"), "of the user");
    EXPECT_EQ(TrashedNames(), (Names{"film.001", "film.002", "film.003", "film.004"}));
    EXPECT_EQ(folder.Read(longest + ".001"), "foreign");
    EXPECT_FALSE(folder.Item("nowhere")->Exists());
    EXPECT_EQ(List().Info.size(), 1U);
}

TEST_F(CutTest, FilesThatComeMeanwhileAreServedInTheirOrderUnderNamesOfTheirOwn) {
    const std::string film = Pattern(2 * kMegabyte);
    for (const auto& [name, size] : {std::pair("film.mov", film.size()), {"a", 1}, {"b", 2}, {"c", 3}})
        folder.Write(name, Pattern(size));
    const auto come = [this](const char* name) { App::Instance()->EncodeFile(folder.Item(name)); };
    std::vector<int32_t> asked;
    QTimer user;
    QObject::connect(&user, &QTimer::timeout, [&] {
        if (QApplication::activeModalWidget() == nullptr)
            return;
        asked.push_back(winCut::Instance()->FileSize);
        if (asked.size() == 2) {
            come("gone"); // before its turn
            come("a");
            come("b");
        }
        winCut::Instance()->comPartSize()->SetText(asked.size() == 1 ? "1" : "1.5");
        winCut::Instance()->ActionButton->Push();
    });
    user.start(1);
    onRow = [&](claFilePerformInfo&) {
        if (rows.size() == 1) {
            come("film.mov"); // before the first has made any part
            come("c");        // before the two that wait have had their turn
        }
    };
    come("film.mov");
    EXPECT_TRUE(WaitUntil([&asked] { return asked.size() == 5; }));
    EXPECT_TRUE(WaitForWorkers());
    EXPECT_EQ(asked, (std::vector<int32_t>{2 * kMegabyte, 2 * kMegabyte, 1, 2, 3}));
    EXPECT_TRUE(HoldsSlices("film.mov", film, kMegabyte));
    EXPECT_TRUE(HoldsSlices("film 1.mov", film, kMegabyte * 3 / 2));
}

TEST_F(CutTest, AStopTrashesThePartsAndKeepsTheSource) {
    folder.WriteSparse("film", 64ULL << 30U);
    // A size that comes to nothing makes empty parts for as long as nobody stops it.
    for (const std::string megabytes : {"100", "1e-9"}) {
        Cut("film", megabytes);
        EXPECT_TRUE(WaitUntil([this] { return folder.Item("film.003")->Exists(); }));
        EXPECT_EQ(folder.Item("film.001")->Length(), megabytes == "100" ? 100 * kMegabyte : 0);
        ClickStop(0);
        ClickStop(0); // once more, before the worker has noticed or after
        EXPECT_TRUE(WaitForWorkers());
        EXPECT_EQ(folder.Names(), Names{"film"});
        EXPECT_EQ(folder.Item("film")->Length(), 64ULL << 30U);
        EXPECT_GE(TrashedNames().size(), 3U);
        EXPECT_EQ(AskedOfDesktop(), "");
    }
}

// A disk that takes no more is not noticed: the parts come out short, each with the bytes of its own place.
TEST_F(CutTest, AFullDiskLeavesShortPartsBeyondFourGigabytesToo) {
    const TestFolder memory("/dev/shm"); // which gives what is not there at once; a disk takes ten seconds
    memory.WriteSparse("film", 3 * (1400ULL << 20U));
    std::ofstream(memory.Path("film"), std::ios::app) << "last";
    std::filesystem::create_symlink(memory.Path("film"), folder.Path("film"));
    folder.Write("film.004", "of another series");
    const FileSizeLimit limit(kMegabyte);
    Cut("film", "1400");
    EXPECT_TRUE(WaitForWorkers());
    EXPECT_EQ(folder.Item(" 1film.003")->Length(), kMegabyte);
    EXPECT_EQ(folder.Read(" 1film.004"), "last");
    EXPECT_EQ(folder.Read("film.004"), "of another series");
}

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
    // What is there, and the maximum and the value of the bar at the end.
    const std::tuple<Files, int32_t, int32_t> table[] = {
        {{{"a.001", kMegabyte * 3 / 2}, {"a.002", kMegabyte * 3 / 2}}, 0, 3}, // four blocks, of which one fell back
        {{{"b.001", kMegabyte - 1}, {"b.002", kMegabyte - 1}}, 0, 0},         // begins without a measure, never moves
        {{{"d.001", kMegabyte}, {"d.002", 0}, {"d.004.DOWNLOAD", kMegabyte}, {"D2.123", kMegabyte}}, 3, 1},
        {{{"e.001", kMegabyte}, {"e", kMegabyte}, {"e.part", kMegabyte}, {"my e.001", kMegabyte}}, 1, 1}};
    for (const auto& [files, maximum, value] : table) {
        for (const auto& [name, size] : files)
            folder.WriteSparse(name, size);
        Glue(files[0].first);
        EXPECT_TRUE(WaitForWorkers());
        const ProgressBar& bar = *rows.back()->Bar;
        EXPECT_EQ(std::pair(bar.Maximum(), bar.Value()), std::pair(maximum, value)) << files[0].first;
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
    EXPECT_TRUE(WaitUntil([] { return List().Info.size() == 1; }));
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

TEST_F(GlueTest, AStopEndsAWaitAndAPartInItsMiddleAndKeepsTheParts) {
    GlueUpToTheWait("film.mov.002.download");
    ClickStop(0);
    EXPECT_TRUE(WaitForWorkers()); // whom no look at the folder would wake
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

// The toolkit's painting would wait for a thread of its own, so no events are served meanwhile.
TEST_F(GlueTest, WithoutAThreadNoneBeginsAndTheDesktopIsStillAsked) {
    folder.Write("film.001", "1");
    {
        const NoMoreThreads limit;
        EXPECT_THROW(Glue("film.001"), std::system_error);
        EXPECT_NO_THROW(RevealFile(folder.Path("film.001"))) << "as at the end of a glue that runs";
    }
    EXPECT_EQ(folder.Names(), Names{"film.001"});
    EXPECT_TRUE(App::Instance()->InUse.empty());
    EXPECT_EQ(AskedOfDesktop(), "reveal " + folder.Path("film.001") + "\n");
}

} // namespace
