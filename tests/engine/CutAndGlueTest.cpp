#include "engine/PartNames.h"
#include "engine/StartCut.h"
#include "engine/claThread.h"
#include "framework/desktop/Desktop.h"
#include "framework/files/FileType.h"
#include "framework/threads/MainThread.h"
#include "framework/windows/ComboBox.h"
#include "framework/windows/ProgressBar.h"
#include "framework/windows/WindowList.h"
#include "settings/claPreferences.h"
#include "tests/support/ProgramTest.h"

#include <QApplication>
#include <QTest>
#include <QTimer>

#include <fstream>
#include <pthread.h>
#include <system_error>

namespace {

using namespace std::string_literals;
using Names = std::vector<std::string>;

constexpr std::size_t kMegabyte = 1048576;

class CutAndGlueTest : public ProgramTest {
protected:
    // Whether the series consists of those bytes in slices of that size, and of nothing more.
    bool HoldsSlices(const std::string& base, const std::string& bytes, std::size_t size) const {
        int32_t number = 1;
        for (std::size_t at = 0; at < bytes.size(); at += size)
            if (folder.Read(PartName(base, number++)) != bytes.substr(at, size))
                return false;
        return !folder.Item(PartName(base, number))->Exists() && !folder.Item(PartName(base, 0))->Exists();
    }

    bool Waits() const { return !rows.empty() && rows.back()->Status.starts_with("Waiting for part 2 "); }

    // Glues a part, up to the wait for another one that is still to come.
    void GlueUpToTheWait(const std::string& download) {
        folder.Write("film.mov.001", "1");
        folder.Write(download, "half of");
        Glue("film.mov.001");
        EXPECT_TRUE(WaitUntil([this] { return Waits(); }));
    }
};

// One step per write, whatever its size: small parts run past the bar's measure, and so does a size beyond 32 bits,
// which goes on stepping when the data is out. Both are meant.
TEST_F(CutAndGlueTest, PartsAreThePlainSlicesOfTheSourceAndGiveItBack) {
    const std::tuple<std::size_t, const char*, std::size_t, int32_t> table[] = {
        {4 * kMegabyte, "2", 2 * kMegabyte, 4},
        {3 * kMegabyte, "1.44", 1509949, 5},
        {3 * kMegabyte + 1, "0.25", kMegabyte / 4, 12},
        {3 * kMegabyte + 3, "1e30", INT32_MAX, 2047},
        {1001, "1e-6", 1, 0}};
    const auto name = [](std::size_t size) { return "film " + std::to_string(size) + ".mov"; };
    for (const auto& [size, megabytes, partSize, steps] : table) {
        const std::string film = Pattern(size);
        folder.Write(name(size), film);
        folder.Item(name(size))->SetMacType("OVPT"); // no more than the parts where files have no attributes
        Cut(name(size), megabytes);
        EXPECT_TRUE(WaitForWorkers());
        EXPECT_TRUE(HoldsSlices(name(size), film, partSize)) << size;
        EXPECT_TRUE(folder.Read(name(size)) == film) << size;
        EXPECT_EQ(folder.Item(name(size) + ".001")->MacType(), folder.Item(name(size))->MacType());
        EXPECT_EQ(rows.back()->Bar->Value(), steps) << size;
        EXPECT_EQ(rows.back()->Status, "Creating part " + std::to_string((size - 1) / partSize + 1) + "…");
    }
    App::Instance()->Preferences->MovePartsToTrash = false;
    for (const auto& row : table) {
        std::filesystem::remove(folder.Path(name(std::get<0>(row))));
        Glue(name(std::get<0>(row)) + ".001");
    }
    EXPECT_TRUE(WaitForWorkers());
    for (const auto& row : table)
        EXPECT_TRUE(folder.Read(name(std::get<0>(row))) == Pattern(std::get<0>(row)));
    EXPECT_EQ(folder.Names().size(), 5U + 2 + 3 + 13 + 1 + 1001);
    EXPECT_EQ(StatusText(), "0 operations running");
}

// No part, no message: the worker ends and its row stays as it was. Others run on.
TEST_F(CutAndGlueTest, WhatCannotBeCutLeavesItsRow) {
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
TEST_F(CutAndGlueTest, FindsABaseThatNoPartIsInTheWayOf) {
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

// As by a source that grows, or by another program.
TEST_F(CutAndGlueTest, WhatComesToStandUnderAPartsNameGoesToTheTrash) {
    const std::string film = Pattern(2 * kMegabyte);
    folder.Write("film", film);
    folder.Write("document", "of the user");
    onRow = [this](claFilePerformInfo&) {
        folder.Write("film.001", "foreign");
        std::filesystem::create_symlink("document", folder.Path("film.002"));
        std::filesystem::create_symlink("nowhere", folder.Path("film.003"));
        std::filesystem::create_directories(folder.Path("film.004/inside"));
    };
    Cut("film", "0.5");
    EXPECT_TRUE(WaitForWorkers());
    EXPECT_TRUE(HoldsSlices("film", film, kMegabyte / 2));
    EXPECT_EQ(folder.Read("document"), "of the user");
    EXPECT_EQ(TrashedNames(), (Names{"film.001", "film.002", "film.003", "film.004"}));
    EXPECT_FALSE(folder.Item("nowhere")->Exists());
}

TEST_F(CutAndGlueTest, ServesWhatComesMeanwhileInItsOrderUnderNamesOfItsOwn) {
    const std::string film = Pattern(2 * kMegabyte);
    for (const std::string& bytes : {"a"s, "bb"s, "ccc"s, film})
        folder.Write(bytes == film ? "film.mov" : bytes, bytes);
    const auto come = [this](const Names& names) {
        for (const std::string& name : names)
            App::Instance()->EncodeFile(folder.Item(name));
    };
    std::vector<int32_t> asked;
    QTimer user;
    QObject::connect(&user, &QTimer::timeout, [&] {
        if (QApplication::activeModalWidget() == nullptr)
            return;
        asked.push_back(winCut::Instance()->FileSize);
        if (asked.size() == 2)
            come({"gone", "a", "bb"}); // the first goes before its turn
        winCut::Instance()->comPartSize()->SetText(asked.size() == 1 ? "1" : "1.5");
        winCut::Instance()->ActionButton->Push();
    });
    user.start(1);
    onRow = [&](claFilePerformInfo&) {
        if (rows.size() == 1)
            come({"film.mov", "ccc"}); // before the first has made any part, and before a and bb have had their turn
    };
    come({"film.mov"});
    EXPECT_TRUE(WaitUntil([&asked] { return asked.size() == 5; }));
    EXPECT_TRUE(WaitForWorkers());
    EXPECT_EQ(asked, (std::vector<int32_t>{2 * kMegabyte, 2 * kMegabyte, 1, 2, 3}));
    EXPECT_TRUE(HoldsSlices("film.mov", film, kMegabyte));
    EXPECT_TRUE(HoldsSlices("film 1.mov", film, kMegabyte * 3 / 2));
    EXPECT_EQ(std::count_if(rows.begin(), rows.end(), [](const auto& row) { return row->Name == "film.mov"; }), 2);
}

TEST_F(CutAndGlueTest, AStopIsHeededAfterTheBlockThatIsUnderWay) {
    folder.Write("disk.001.download", "half of");
    folder.WriteSparse("film", 3 * kMegabyte);
    folder.WriteSparse("song.001", 3 * kMegabyte);
    folder.Write("text", "x");
    // Before anything is done. One would lie down to wait, one would make empty parts for ever, its size being nothing.
    onRow = [](claFilePerformInfo& row) { row.PerformThread->Stop = true; };
    Glue("disk.001");
    Cut("film", "2");
    Glue("song.001");
    Cut("text", "1e-9");
    EXPECT_TRUE(WaitForWorkers());
    for (const Ref<claFilePerformInfo>& row : rows)
        EXPECT_EQ(row->Bar->Value(), row->Bar->Maximum() == 3 ? 1 : 0) << row->Name;
    EXPECT_EQ(folder.Names(), (Names{"disk.001.download", "film", "song.001", "text"}));
    EXPECT_EQ(TrashedNames(), (Names{"disk", "film.001", "song", "text.001"}));
    EXPECT_EQ(AskedOfDesktop(), "");
}

TEST_F(CutAndGlueTest, AConfirmedQuitTellsEveryWorkerToStop) {
    GlueUpToTheWait("film.mov.002.download");
    folder.Write("song.001.download", "half of");
    Glue("song.001");
    EXPECT_TRUE(WaitUntil([this] { return rows.size() == 2; }));
    for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return}) {
        PostToMainThread([key] { QTest::keyClick(QApplication::activeModalWidget(), key); });
        EXPECT_EQ(WindowList::Refuse(), key == Qt::Key_Escape);
        for (const Ref<claFilePerformInfo>& row : rows)
            EXPECT_EQ(row->PerformThread->Stop, key == Qt::Key_Return) << row->Name;
    }
    ClickStop(1); // they sleep on
    ClickStop(0);
    ClickStop(0); // once more, before the worker has noticed or after
    EXPECT_TRUE(WaitForWorkers());
    EXPECT_EQ(TrashedNames(), (Names{"film.mov", "song"}));
}

// A disk that takes no more changes nothing in how an operation goes: the parts come out short, each with the bytes of
// its own place, and a glue passes for a success. This is why parts go to the Trash and not for good. The desktop tells
// of it, once an operation.
TEST_F(CutAndGlueTest, AFullDiskIsToldAndNoMoreBeyondFourGigabytesEither) {
    const TestFolder memory("/dev/shm"); // which gives what is not there at once; a disk takes ten seconds
    memory.WriteSparse("film", 3 * (1400ULL << 20U));
    std::ofstream(memory.Path("film"), std::ios::app) << "last";
    std::filesystem::create_symlink(memory.Path("film"), folder.Path("film.zip"));
    folder.Write("film.zip.004", "of another series");
    App::Instance()->Preferences->LaunchArchives = false;
    const FileSizeLimit limit(kMegabyte + 1000);
    Cut("film.zip", "1400");
    EXPECT_TRUE(WaitForWorkers());
    EXPECT_EQ(folder.Item("film 1.zip.003")->Length(), kMegabyte + 1000);
    EXPECT_EQ(folder.Read("film 1.zip.004"), "last");
    const auto isTold = [](const std::string& file, const std::string& more) {
        const std::string why = " Reading or writing failed: " + std::generic_category().message(EFBIG) + ".";
        return AskedOfDesktop().find("notify Ombrivel example.halvrick.Ombrivel “" + file + "” is not complete" + why +
                                     more + "\n") != std::string::npos;
    };
    EXPECT_TRUE(isTold("film 1.zip.001", ""));
    Glue("film 1.zip.001");
    EXPECT_TRUE(WaitForWorkers());
    EXPECT_EQ(folder.Item("film 1.zip")->Length(), kMegabyte + 1000);
    EXPECT_TRUE(isTold("film 1.zip", " Its parts are in the Trash."));
    EXPECT_EQ(TrashedNames().size(), 4U);
    EXPECT_EQ(folder.Read("film.zip.004"), "of another series");
}

TEST_F(CutAndGlueTest, JoinsTheSeriesFromItsLowestNumberToItsFirstGap) {
    const std::string longest(251, 'n');
    // What is there, the part chosen, the target, and what is in it. Each part holds the last digit of its number.
    const std::tuple<Names, std::string, std::string, std::string> table[] = {
        {{"a.RAR.001", "a.RAR.002", "a.RAR.003"}, "a.RAR.003", "a.RAR", "123"},
        {{"b.zip.000", "b.zip.001", "b.zip.002"}, "b.zip.001", "b.zip", "012"},
        {{"c.mov.001", "c.mov.002", "c.mov.004"}, "c.mov.004", "c.mov", "12"},
        {{"d.mov.002", "d.mov.003"}, "d.mov.002", "d.mov", ""},
        {{"my.e.mov", "my 1.e.mov", "my.e.mov.001"}, "my.e.mov.001", "my 2.e.mov", "1"}, // before the first point
        {{"f", "f.001"}, "f.001", " 1f", "1"},
        {{"g.mov.999", "g.mov.1000"}, "g.mov.1000", "g.mov.", ""}, // a base with a point at its end fits no part
        {{"€𝄞.€\xFFx"}, "€𝄞.€\xFFx", "€𝄞", ""},                    // no part at all: characters go, not bytes
        {{"h\xFF\n.001", "h\xFF\n.002"}, "h\xFF\n.002", "h\xFF\n", "12"},
        {{longest + ".001"}, longest + ".001", longest, "1"}};
    App::Instance()->Preferences->MovePartsToTrash = false;
    for (const auto& [there, chosen, target, glued] : table) {
        for (const std::string& name : there)
            folder.Write(name, name.substr(name.size() - 1));
        Glue(chosen);
        EXPECT_TRUE(WaitForWorkers());
        EXPECT_EQ(rows.back()->Name, target);
        EXPECT_EQ(folder.Item(target)->MacType(), kNoFileCode);
        EXPECT_TRUE(folder.Item(target)->Exists()) << target;
        EXPECT_EQ(folder.Read(target), glued) << target;
        const std::string verb = target == "a.RAR" || target == "b.zip" ? "open " : "reveal ";
        EXPECT_EQ(AskedOfDesktop(), verb + folder.Path(target) + "\n");
        EXPECT_EQ(rows.back()->Status, glued.empty() ? "Preparing…" : "Adding part "s + glued.back() + "…") << target;
    }
    EXPECT_EQ(folder.Names().size(), 32U) << "all that was there, and the targets";
    EXPECT_TRUE(App::Instance()->InUse.empty());
}

// Each part loses its fraction on the way into the sum; what that makes of the bar is accepted.
TEST_F(CutAndGlueTest, TheEstimateLosesTheFractionOfEachPart) {
    using Files = std::vector<std::pair<std::string, std::size_t>>;
    // What is there, and the maximum and the value of the bar at the end.
    const std::tuple<Files, int32_t, int32_t> table[] = {
        {{{"a.001", kMegabyte * 3 / 2}, {"a.002", kMegabyte * 3 / 2}}, 0, 3}, // four blocks, of which one fell back
        {{{"b.001", kMegabyte - 1}, {"b.002", kMegabyte - 1}}, 0, 0},         // begins without a measure, never moves
        {{{"d.001", kMegabyte}, {"d.002", 0}, {"d.004.DOWNLOAD", kMegabyte}, {"D2.123", kMegabyte}}, 3, 1},
        {{{"e.001", kMegabyte}, {"ex007", kMegabyte}, {"e.part", kMegabyte}, {"my e.001", kMegabyte}}, 2, 1},
        {{{"f.x.001", kMegabyte}, {"f.x.008.part", kMegabyte}, {"F.Ab3-_xyZ.X.007.part", kMegabyte}}, 3, 1},
        {{{"g.x.001", kMegabyte}, {"g.x.007.aria2", kMegabyte}, {"g.Ab3-_xyZ.007.part", kMegabyte}}, 1, 1}};
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
TEST_F(CutAndGlueTest, ASeriesThatIsBeingGluedIsTurnedAway) {
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
    ClickStop(0);
}

TEST_F(CutAndGlueTest, WhatCannotBeWrittenLeavesItsRowAndItsSeriesInUse) {
    for (const char* name : {".001", "001", "x"}) { // leave no name to glue under
        folder.Write(name, "1");
        Glue(name);
    }
    for (const char* part : {"/proc/film.mov.001", "/proc/film.mov.002"}) { // where no file can be made
        App::Instance()->DecodeFile(New<FolderItem>(part));
        EXPECT_TRUE(WaitForWorkers());
    }
    EXPECT_EQ(folder.Names(), (Names{".001", "001", "x"}));
    EXPECT_EQ(StatusText(), "1 operation running");
    ASSERT_EQ(App::Instance()->InUse.size(), 1U);
    EXPECT_EQ(App::Instance()->InUse[0]->AbsolutePath(), "/proc/film.mov");
}

// The toolkit's painting would wait for a thread of its own, so no events are served meanwhile.
TEST_F(CutAndGlueTest, WithoutAThreadNoneBeginsAndTheDesktopIsStillAsked) {
    folder.Write("film.001", "1");
    pthread_attr_t before{};
    pthread_getattr_default_np(&before);
    pthread_attr_t tooLarge = before;
    pthread_attr_setstacksize(&tooLarge, std::size_t{1} << 50U);
    pthread_setattr_default_np(&tooLarge);
    EXPECT_THROW(Glue("film.001"), std::system_error);
    EXPECT_NO_THROW(RevealFile(folder.Path("film.001"))) << "as at the end of a glue that runs";
    pthread_setattr_default_np(&before);
    EXPECT_EQ(folder.Names(), Names{"film.001"});
    EXPECT_TRUE(App::Instance()->InUse.empty());
    EXPECT_EQ(AskedOfDesktop(), "reveal " + folder.Path("film.001") + "\n");
}

} // namespace
