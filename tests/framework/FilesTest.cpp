#include "bench/Scratch.h"
#include "engine/FileTypes.h"
#include "framework/files/BinaryStream.h"
#include "framework/files/FileUri.h"
#include "framework/files/SpecialFolder.h"
#include "framework/files/TextInputStream.h"
#include "framework/files/TextOutputStream.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using namespace std::string_literals;
using Names = std::vector<std::string>;

// Names that a file system takes and a careless program does not. The Trash keeps a note of its own for each file, for
// which the longest leaves no room: such a file stays where it is.
TEST(Files, AnyNameOfTheSystemPassesThroughWholeAndIntoTheTrashAndNoneLeavesItsFolder) {
    const TestFolder folder;
    const std::string longest(255, 'n');
    for (const std::string& name :
         Names{" blank ", "line\nbreak", "not\xFFutf8\xC3", "per%20", "-rf", "~", "a\\b", longest}) {
        folder.Item(name)->CreateBinaryFile("")->Write(name);
        EXPECT_EQ(folder.Read(name), name);
        EXPECT_EQ(PathFromFileUri(FileUriFromPath(folder.Path(name))), folder.Path(name));
    }
    for (const std::string& name : {""s, "."s, ".."s, "/"s, "a/b"s, "../x"s, "zero\0byte"s, longest + "n"}) {
        EXPECT_FALSE(folder.Item(name)->Exists()) << name;
        EXPECT_TRUE(folder.Item(name)->CreateBinaryFile("").IsNil()) << name;
        folder.Item(name)->MoveFileTo(SpecialFolder::Trash());
        folder.Item(name)->Delete();
    }
    const auto whole = New<FolderItem>(folder.Path() + "/./");
    for (int32_t i = 1; i <= whole->Count(); ++i)
        whole->Item(i)->MoveFileTo(SpecialFolder::Trash());
    EXPECT_EQ(folder.Names(), Names{longest});
    EXPECT_EQ(TrashedNames().size(), 7U);
    const std::string list = "# note\r\nfile:///a%20b\r\nhttp://x/y\r\nfile://elsewhere/c\r\nfile:///%FF";
    EXPECT_EQ(PathsFromUriList(list), (Names{"/a b", "/\xFF"}));
}

TEST(Files, APathKeepsItsLinksButForTheWayUp) {
    const TestFolder folder;
    std::filesystem::create_directories(folder.Path("inner/deep"));
    std::filesystem::create_directory_symlink("inner/deep", folder.Path("link"));
    const std::string base = New<FolderItem>(folder.Path())->AbsolutePath() + "/";
    for (const auto& [path, clean] : {std::pair("link/a..b.001", "link/a..b.001"),
                                      {"link/...", "link/..."},
                                      {"link/./x/", "link/x"},
                                      {"link/../x", "inner/x"},
                                      {"link/..", "inner"}})
        EXPECT_EQ(New<FolderItem>(base + path)->AbsolutePath(), base + clean);
}

TEST(Files, AFileIsAPartByItsCodeOrElseByItsExtension) {
    const TestFolder folder;
    std::filesystem::create_directory(folder.Path("folder.001"));
    for (const char* name : {"film.mov.000", "film.mov.050", ".001"})
        EXPECT_EQ(folder.Item(name)->Type(), "Ombrivel Part") << name;
    for (const char* name : {"film.mov.051", "film.mov.01", "film.001.mov", "001", "film.", "folder.001"})
        EXPECT_EQ(folder.Item(name)->Type(), "") << name;
    const Ref<FolderItem> item = folder.Item("film.mov.051");
    item->CreateBinaryFile(FileTypes::OmbrivelPart()->Name)->Write("x");
    if (item->MacType() == kNoFileCode)
        GTEST_SKIP() << "no extended attributes here";
    EXPECT_EQ(item->MacType() + item->MacCreator() + item->Type(), "OVPTOMBVOmbrivel Part");
    item->ReplaceBinaryFile(FileTypes::Unknown()->Name)->Close();
    EXPECT_EQ(item->MacType() + item->MacCreator() + item->Type() + folder.Read("film.mov.051"), "????????");
}

int leased = -1;

// Opening a pipe could wait for its other end for ever, and lets that end down. The holder of a lease is asked by a
// signal to give it back.
TEST(Files, OnlyPlainFilesAreOpenedAndOneUnderALeaseIsWaitedFor) {
    const TestFolder folder;
    ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
    pollfd reader = {open(folder.Path("pipe").c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC), POLLIN, 0};
    std::filesystem::create_directory(folder.Path("folder"));
    for (const Ref<FolderItem>& item : {folder.Item("pipe"), folder.Item("folder")}) {
        EXPECT_TRUE(item->OpenAsBinaryFile(false).IsNil());
        EXPECT_TRUE(item->OpenAsBinaryFile(true).IsNil());
        EXPECT_TRUE(item->OpenAsTextFile().IsNil());
        EXPECT_TRUE(item->CreateBinaryFile("").IsNil());
        EXPECT_TRUE(item->CreateTextFile().IsNil());
        EXPECT_EQ(item->Length(), 0U);
    }
    EXPECT_EQ(poll(&reader, 1, 0), 0) << "nobody has come and gone";
    close(reader.fd);
    folder.Write("file", "x");
    leased = open(folder.Path("file").c_str(), O_RDONLY | O_CLOEXEC);
    if (fcntl(leased, F_SETLEASE, F_WRLCK) != 0)
        GTEST_SKIP() << "no leases here";
    std::signal(SIGIO, [](int) { fcntl(leased, F_SETLEASE, F_UNLCK); });
    EXPECT_EQ(folder.Item("file")->OpenAsBinaryFile(false)->Read(1), "x");
    close(leased);
}

TEST(Files, AStreamEndsWhereItsFileEndsByNowAndIsClosedOnce) {
    constexpr int32_t kBlock = 1048576;
    const TestFolder folder;
    folder.WriteSparse("from", uint64_t{2} * kBlock);
    const Ref<BinaryStream> from = folder.Item("from")->OpenAsBinaryFile(false);
    const Ref<BinaryStream> to = folder.Item("to")->CreateBinaryFile("");
    to->Write(from->Read(5)); // both ways to move bytes share one position
    to->WriteFrom(*from, kBlock - 5);
    folder.WriteSparse("from", kBlock + 10);
    to->WriteFrom(*from, kBlock);
    EXPECT_EQ(folder.Item("to")->Length(), kBlock + 10U);
    folder.WriteSparse("from", 10);
    EXPECT_TRUE(from->AtEOF());
    folder.WriteSparse("from", kBlock + 12);
    EXPECT_EQ(from->Read(5).size(), 2U);
    from->Close();
    const Ref<BinaryStream> other = folder.Item("to")->OpenAsBinaryFile(false);
    from->Close(); // takes nothing away from who has its descriptor now
    EXPECT_TRUE(from->AtEOF());
    EXPECT_FALSE(other->AtEOF());
}

// Those that can be had here.
class FilesThatShareBlocks : public testing::Test {
protected:
    FilesThatShareBlocks() {
        for (const LoopMount& mount : mounts_)
            if (mount.Mounted())
                places.push_back(mount.Point());
    }
    void SetUp() override {
        if (places.empty())
            GTEST_SKIP() << "no such file system can be mounted here";
    }

    static constexpr int32_t kBlock = 1048576;
    std::vector<std::string> places;

private:
    const TestFolder folder_;
    const std::array<LoopMount, 2> mounts_{LoopMount("btrfs", folder_.Path(), 512ULL * kBlock),
                                           LoopMount("xfs", folder_.Path(), 512ULL * kBlock)};
};

TEST_F(FilesThatShareBlocks, AreCopiedAfterAStopBeforeAllIsWrittenOut) {
    for (const std::string& place : places) {
        WriteFile(place + "/from", Pattern(kBlock));
        for (const bool stop : {false, true}) {
            const std::string target = place + "/to" + std::to_string(int(stop));
            const Ref<BinaryStream> from = New<FolderItem>(place + "/from")->OpenAsBinaryFile(false);
            from->PrepareToShare(stop);
            New<FolderItem>(target)->CreateBinaryFile("")->WriteFrom(*from, kBlock);
            EXPECT_EQ(std::system(("filefrag -v '" + target + "' | grep -q shared").c_str()) != 0, stop) << place;
            EXPECT_TRUE(ReadFile(target) == Pattern(kBlock)) << place;
        }
    }
}

// As a part may while it is glued. Shared blocks lie ahead of what has been read.
TEST_F(FilesThatShareBlocks, FollowEachOtherWithoutAGapThoughOneShrinks) {
    for (const std::string& place : places) {
        const std::string next = Pattern(kBlock + 1);
        WriteFile(place + "/1", Pattern(std::size_t{16} * kBlock));
        WriteFile(place + "/2", next);
        const FolderItem folder(place);
        const Ref<BinaryStream> whole = folder.Child("whole")->CreateBinaryFile("");
        const auto append = [&](BinaryStream& part, int blocks) {
            while (blocks-- > 0 && !part.AtEOF())
                whole->WriteFrom(part, kBlock, INT64_MAX);
        };
        const Ref<BinaryStream> first = folder.Child("1")->OpenAsBinaryFile(false);
        append(*first, 4);
        std::filesystem::resize_file(place + "/1", std::size_t{4} * kBlock);
        append(*first, INT_MAX);
        append(*folder.Child("2")->OpenAsBinaryFile(false), INT_MAX);
        const std::string bytes = ReadFile(place + "/whole");
        EXPECT_TRUE(bytes == Pattern(std::size_t{16} * kBlock).substr(0, bytes.size() - next.size()) + next) << place;
    }
}

// Room is found for a large piece at once, and what a stop leaves of it goes back to the disk.
TEST(Files, AStreamClosedEarlyHoldsNoMoreOfTheDiskThanItsBytes) {
    constexpr int32_t kBlock = 1048576;
    const TestFolder folder;
    folder.WriteSparse("from", uint64_t{32} * kBlock);
    const Ref<BinaryStream> to = folder.Item("to")->CreateBinaryFile("");
    to->Write("x"); // nothing can be shared from there on
    to->WriteFrom(*folder.Item("from")->OpenAsBinaryFile(false), kBlock, int64_t{31} * kBlock);
    to->Close();
    struct stat status = {};
    ASSERT_EQ(stat(folder.Path("to").c_str(), &status), 0);
    EXPECT_EQ(status.st_size, kBlock + 1);
    EXPECT_LE(status.st_blocks * 512, 2 * kBlock);
}

} // namespace
