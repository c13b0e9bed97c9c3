#include "engine/PartNames.h"
#include "engine/StartCut.h"
#include "framework/windows/ComboBox.h"
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
    EXPECT_EQ(PartCount(0, 100) + PartCount(100, 100) + PartCount(101, 100) + PartCount(5ULL << 30U, INT32_MAX), 6);
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
    folder.WriteSparse("film", 2 * (2047ULL << 20U));
    std::ofstream(folder.Path("film"), std::ios::app) << "third";
    const FileSizeLimit limit(kMegabyte);
    Cut("film", "2047");
    EXPECT_TRUE(WaitForWorkers());
    EXPECT_EQ(folder.Item("film.002")->Length(), kMegabyte);
    EXPECT_EQ(folder.Read("film.003"), "third");
}

} // namespace
