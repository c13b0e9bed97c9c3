#include "core/App.h"
#include "engine/PartNames.h"
#include "engine/claEncodeThread.h"
#include "framework/files/BinaryStream.h"
#include "framework/files/FolderItem.h"
#include "framework/windows/ProgressBar.h"
#include "settings/claPreferences.h"
#include "tests/support/ProgramTest.h"
#include "ui/claFilePerform.h"
#include "ui/claFilePerformInfo.h"

#include <filesystem>
#include <fstream>

namespace {

using namespace std::string_literals;
using Names = std::vector<std::string>;
using Sizes = std::vector<std::size_t>;

constexpr std::size_t kMegabyte = 1048576;

class CutTest : public ProgramTest {
protected:
    // The series from number 1 on: the size of each part, and the bytes of all.
    Sizes PartSizes(const std::string& base, std::string* bytes = nullptr) const {
        Sizes sizes;
        for (int32_t i = 1; folder.Item(PartName(base, i))->Exists(); ++i) {
            const std::string part = folder.Read(PartName(base, i));
            sizes.push_back(part.size());
            if (bytes != nullptr)
                *bytes += part;
        }
        return sizes;
    }

    std::string Joined(const std::string& base) const {
        std::string bytes;
        PartSizes(base, &bytes);
        return bytes;
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

TEST_F(CutTest, PartsAreThePlainSlicesOfTheSource) {
    constexpr std::size_t kFloppy = 1509949; // 1.44 megabytes, the fraction of a byte dropped
    const std::tuple<std::size_t, std::string, Sizes> table[] = {
        {5 * kMegabyte, "2", {2 * kMegabyte, 2 * kMegabyte, kMegabyte}},
        {4 * kMegabyte, "2", {2 * kMegabyte, 2 * kMegabyte}},
        {2 * kFloppy + 3, "1.44", {kFloppy, kFloppy, 3}},
        {5, "0.000002", {2, 2, 1}}};
    for (const auto& [size, megabytes, parts] : table) {
        const std::string name = "film " + std::to_string(size) + ".mov";
        folder.Write(name, Pattern(size));
        Cut(name, megabytes);
        EXPECT_TRUE(WaitForWorkers());
        EXPECT_EQ(PartSizes(name), parts) << name;
        EXPECT_TRUE(Joined(name) == Pattern(size) && folder.Read(name) == Pattern(size)) << name;
        EXPECT_FALSE(folder.Item(name + ".000")->Exists());
        EXPECT_EQ(rows.back()->Status, "Creating part " + std::to_string(parts.size()) + "…");
        EXPECT_EQ(AskedOfDesktop(), "reveal " + folder.Path(name + ".001") + "\n");
    }
    EXPECT_TRUE(List().Info.empty());
    EXPECT_EQ(TrashedNames(), Names());
}

// One step per write, whatever its size: small parts run past the bar's measure, and so does a size beyond 32 bits,
// which goes on stepping when the data is out. Both are meant.
TEST_F(CutTest, StepsGoByTheWritesAndNotByTheBytes) {
    folder.Write("film", Pattern(3 * kMegabyte));
    int32_t maximum = 0;
    onRow = [&maximum](claFilePerformInfo& row) { maximum = row.Bar->Maximum(); };
    for (const auto& [size, steps] : {std::pair("0.25", 11), {"2048", 2047}, {"1e30", 2047}}) {
        Cut("film", size);
        EXPECT_TRUE(WaitForWorkers());
        EXPECT_EQ(maximum, 3);
        EXPECT_EQ(std::pair(rows.back()->Bar->Value(), rows.back()->Bar->Maximum()), std::pair(steps, 0)) << size;
        EXPECT_EQ(rows.back()->Name, "film") << "the source's name, never the base";
    }
    EXPECT_EQ(PartSizes("film").size(), 12U);
    EXPECT_TRUE(Joined(" 1film") == Pattern(3 * kMegabyte) && Joined(" 2 1film") == Pattern(3 * kMegabyte));
}

// No part, no message: the worker ends and its row stays as it was. Others run on.
TEST_F(CutTest, WhatCannotBeCutLeavesItsRow) {
    const std::string tooLong(255, 'n'); // no room for the number of a part
    folder.Write("empty", "");
    folder.Write("film", "x");
    folder.Write(tooLong, "x");
    std::filesystem::create_directory(folder.Path("folder"));
    RunWorker("film", 10, folder.Item("missing"));
    for (const std::string& name : {"empty"s, "folder"s, tooLong, "film"s})
        Cut(name, "1");
    EXPECT_TRUE(WaitForWorkers());
    EXPECT_EQ(folder.Names(), (Names{"empty", "film", "film.001", "folder", tooLong}));
    EXPECT_EQ(StatusText(), "4 operations running");
    for (const Ref<claFilePerformInfo>& row : List().Info) {
        const bool unread = row->Name == "empty" || row->Name == "folder";
        EXPECT_EQ(row->Status, unread ? "Preparing…" : "Creating part 1…") << row->Name;
    }
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
    EXPECT_EQ(PartSizes("film"), (Sizes{kMegabyte, kMegabyte, 5}));
    EXPECT_EQ(folder.Read("film.003"), "third");
    EXPECT_TRUE(List().Info.empty());
}

TEST_F(CutTest, ManyRunSideBySide) {
    App::Instance()->Preferences->ShowFilesAfter = false;
    for (std::size_t i = 0; i < 12; ++i) {
        folder.Write("film" + std::to_string(i), Pattern(2 * kMegabyte + i));
        Cut("film" + std::to_string(i), "0.5");
    }
    EXPECT_TRUE(WaitForWorkers());
    for (std::size_t i = 0; i < 12; ++i)
        EXPECT_TRUE(Joined("film" + std::to_string(i)) == Pattern(2 * kMegabyte + i)) << i;
    EXPECT_EQ(rows.size(), 12U);
    EXPECT_EQ(StatusText() + AskedOfDesktop(), "0 operations running");
}

} // namespace
