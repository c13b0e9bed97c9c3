#include "engine/PartNames.h"
#include "engine/claEncodeThread.h"
#include "framework/files/BinaryStream.h"
#include "framework/windows/ProgressBar.h"
#include "tests/support/ProgramTest.h"

#include <QApplication>
#include <QTimer>

#include <filesystem>
#include <fstream>

namespace {

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

    // A cut that no dialog could ask for.
    void RunWorker(const std::string& name, int32_t partSize, const Ref<FolderItem>& target) const {
        const auto thread = New<claEncodeThread>();
        thread->File = folder.Item(name);
        thread->StreamIn = thread->File->OpenAsBinaryFile(false);
        thread->Folder = target;
        thread->FileName = name;
        thread->PartSize = partSize;
        thread->Run();
    }
};

// One step per write, whatever its size: small parts run past the bar's measure, and so does a size beyond 32 bits,
// which goes on stepping when the data is out. Both are meant.
TEST_F(CutTest, PartsAreThePlainSlicesOfTheSource) {
    const std::tuple<std::size_t, const char*, std::size_t, int32_t> table[] = {
        {5 * kMegabyte, "2", 2 * kMegabyte, 5},       {4 * kMegabyte, "2", 2 * kMegabyte, 4},
        {3 * kMegabyte, "1.44", 1509949, 5},          {3 * kMegabyte + 1, "0.25", kMegabyte / 4, 12},
        {3 * kMegabyte + 2, "2048", INT32_MAX, 2047}, {3 * kMegabyte + 3, "1e30", INT32_MAX, 2047}};
    for (const auto& [size, megabytes, partSize, steps] : table) {
        const std::string name = "film " + std::to_string(size) + ".mov";
        folder.Write(name, Pattern(size));
        Cut(name, megabytes);
        EXPECT_TRUE(WaitForWorkers());
        EXPECT_TRUE(HoldsSlices(name, Pattern(size), partSize)) << name;
        EXPECT_TRUE(folder.Read(name) == Pattern(size)) << name;
        EXPECT_EQ(rows.back()->Bar->Value(), steps) << name;
        EXPECT_EQ(rows.back()->Status, "Creating part " + std::to_string((size - 1) / partSize + 1) + "…");
        EXPECT_EQ(AskedOfDesktop(), "reveal " + folder.Path(name + ".001") + "\n");
    }
    EXPECT_TRUE(List().Info.empty());
    EXPECT_EQ(TrashedNames(), Names());
}

// No part, no message: the worker ends and its row stays as it was. Others run on.
TEST_F(CutTest, WhatCannotBeCutLeavesItsRow) {
    const std::string tooLong(255, 'n'); // no room for the number of a part
    folder.Write("empty", "");
    folder.Write("film", "x");
    folder.Write(tooLong, "x");
    std::filesystem::create_directory(folder.Path("folder"));
    RunWorker("film", 10, folder.Item("missing"));
    App::Instance()->EncodeFile(New<FolderItem>("/")); // no dialog at all
    for (const std::string& name : {"empty"s, "folder"s, tooLong, "film"s})
        Cut(name, "1");
    EXPECT_TRUE(WaitForWorkers());
    EXPECT_EQ(folder.Names(), (Names{"empty", "film", "film.001", "folder", tooLong}));
    EXPECT_EQ(StatusText(), "4 operations running");
    for (const Ref<claFilePerformInfo>& row : List().Info) {
        const bool unread = row->Name == "empty" || row->Name == "folder";
        EXPECT_TRUE(WaitUntil([&] { return row->Status == (unread ? "Preparing…" : "Creating part 1…"); }))
            << row->Name;
    }
}

// The second one comes before the first has made any part.
TEST_F(CutTest, CutsOfOneFileSideBySideGetNamesOfTheirOwn) {
    const std::string film = Pattern(2 * kMegabyte);
    folder.Write("film.mov", film);
    onRow = [this](claFilePerformInfo& row) {
        EXPECT_EQ(row.Name, "film.mov");
        if (rows.size() == 1)
            Cut("film.mov", "1.5");
    };
    Cut("film.mov", "1");
    EXPECT_TRUE(WaitForWorkers());
    EXPECT_EQ(rows.size(), 2U);
    EXPECT_TRUE(HoldsSlices("film.mov", film, kMegabyte));
    EXPECT_TRUE(HoldsSlices("film 1.mov", film, kMegabyte * 3 / 2));
}

TEST_F(CutTest, FilesThatComeMeanwhileAreAskedAboutInTheirOrder) {
    for (std::size_t size = 1; size <= 4; ++size)
        folder.Write(std::to_string(size), Pattern(size));
    const auto cut = [this](const std::string& name) { App::Instance()->EncodeFile(folder.Item(name)); };
    std::string asked;
    QTimer user;
    QObject::connect(&user, &QTimer::timeout, [&] {
        if (QApplication::activeModalWidget() == nullptr)
            return;
        asked += std::to_string(winCut::Instance()->FileSize);
        if (asked == "1") {
            cut("2");
            cut("3");
        }
        winCut::Instance()->CancelButton->Push();
    });
    user.start(1);
    cut("1");
    cut("4"); // before the two that wait have had their turn
    EXPECT_TRUE(WaitUntil([&asked] { return asked.size() == 4; }));
    EXPECT_EQ(asked, "1234");
}

TEST_F(CutTest, AStopTrashesThePartsAndKeepsTheSource) {
    folder.WriteSparse("film", 64ULL << 30U);
    Cut("film", "100");
    EXPECT_TRUE(WaitUntil([this] { return folder.Item("film.002")->Exists(); }));
    ClickStop(0);
    ClickStop(0); // once more, before the worker has noticed or after
    EXPECT_TRUE(WaitForWorkers());
    EXPECT_EQ(folder.Names(), Names{"film"});
    EXPECT_EQ(folder.Item("film")->Length(), 64ULL << 30U);
    EXPECT_GE(TrashedNames().size(), 2U);
    EXPECT_TRUE(List().Info.empty());
    EXPECT_EQ(AskedOfDesktop(), "");
}

// Nothing moves, so the source never ends.
TEST_F(CutTest, ASizeThatIsNoneMakesEmptyPartsUntilItIsStopped) {
    folder.Write("film", "x");
    for (const int32_t partSize : {0, INT32_MIN}) {
        RunWorker("film", partSize, folder.Item("film")->Parent());
        EXPECT_TRUE(WaitUntil([this] { return folder.Item("film.004")->Exists(); }));
        EXPECT_EQ(folder.Read("film.001"), "");
        ClickStop(0);
        EXPECT_TRUE(WaitForWorkers());
        EXPECT_EQ(folder.Names(), Names{"film"});
    }
}

// A disk that takes no more is not noticed: the parts come out short, each with the bytes of its own place.
TEST_F(CutTest, AFullDiskLeavesShortPartsBeyondFourGigabytesToo) {
    folder.WriteSparse("film", 2 * (2047ULL << 20U));
    std::ofstream(folder.Path("film"), std::ios::app) << "third";
    const FileSizeLimit limit(kMegabyte);
    Cut("film", "2047");
    EXPECT_TRUE(WaitForWorkers());
    EXPECT_EQ(folder.Item("film.002")->Length(), kMegabyte);
    EXPECT_EQ(folder.Read("film.003"), "third");
    EXPECT_TRUE(List().Info.empty());
}

} // namespace
