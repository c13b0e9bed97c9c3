#include "engine/FileTypes.h"
#include "framework/files/BinaryStream.h"
#include "framework/files/FileUri.h"
#include "framework/files/SpecialFolder.h"
#include "framework/files/TextInputStream.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using namespace std::string_literals;
using Names = std::vector<std::string>;

// Names that a file system takes and a careless program does not, the longest one last. The Trash keeps a note of its
// own for each file, for which the longest leaves no room: such a file stays where it is.
const Names kHardNames = {" blank ", "line\nbreak", "not\xFFutf8\xC3",    "😀.mov", "per%20cent", "-rf",
                          "~",       "a\\b",        std::string(255, 'n')};

TEST(Files, AnyNameOfTheSystemPassesThroughWholeAndIntoTheTrash) {
    const TestFolder folder;
    for (const std::size_t round : {1U, 2U}) {
        for (const std::string& name : kHardNames) {
            folder.Item(name)->CreateBinaryFile("")->Write(name);
            EXPECT_EQ(folder.Item(name)->Length(), name.size()) << name;
            EXPECT_EQ(PathFromFileUri(FileUriFromPath(folder.Path(name))), folder.Path(name)) << name;
        }
        const Ref<FolderItem> whole = New<FolderItem>(folder.Path() + "/./");
        for (int32_t i = 1; i <= whole->Count(); ++i) {
            EXPECT_EQ(std::count(kHardNames.begin(), kHardNames.end(), whole->Item(i)->Name()), 1);
            whole->Item(i)->MoveFileTo(SpecialFolder::Trash());
        }
        EXPECT_EQ(folder.Names(), Names{kHardNames.back()});
        EXPECT_EQ(TrashedNames().size(), round * (kHardNames.size() - 1)) << "the second ones get a number";
    }
}

TEST(Files, ADropMayHoldAnyNameOfThisMachine) {
    const std::string list = "# note\r\nfile:///a%20b\r\nhttp://x/y\r\nfile://elsewhere/c\r\nfile:///%FF";
    EXPECT_EQ(PathsFromUriList(list), (Names{"/a b", "/\xFF"}));
}

TEST(Files, NoChildLeavesItsFolder) {
    const TestFolder folder;
    for (const std::string& name : {""s, "."s, ".."s, "/"s, "a/b"s, "../x"s, "zero\0byte"s, std::string(256, 'n')}) {
        EXPECT_FALSE(folder.Item(name)->Exists()) << name;
        EXPECT_TRUE(folder.Item(name)->CreateBinaryFile("").IsNil()) << name;
        folder.Item(name)->MoveFileTo(SpecialFolder::Trash());
        folder.Item(name)->Delete();
    }
    EXPECT_EQ(folder.Names(), Names());
}

TEST(Files, AFileIsAPartByItsCodeOrElseByItsExtension) {
    const TestFolder folder;
    for (const char* name : {"film.mov.000", "film.mov.050", ".001"})
        EXPECT_EQ(folder.Item(name)->Type(), "Ombrivel Part") << name;
    for (const char* name : {"film.mov.051", "film.mov.01", "film.001.mov", "001", "film.mov.0010", "film.", ""})
        EXPECT_EQ(folder.Item(name)->Type(), "") << name;
    std::filesystem::create_directory(folder.Path("folder.001"));
    EXPECT_EQ(folder.Item("folder.001")->Type(), "");
    const Ref<FolderItem> item = folder.Item("film.mov.051");
    item->CreateBinaryFile(FileTypes::OmbrivelPart()->Name)->Write("first and long");
    if (item->MacType() == kNoFileCode)
        GTEST_SKIP() << "no extended attributes here";
    EXPECT_EQ(item->MacType() + item->MacCreator() + item->Type(), "OVPTOMBVOmbrivel Part");
    item->CreateBinaryFile(FileTypes::Unknown()->Name)->Write("second");
    EXPECT_EQ(item->MacType() + item->MacCreator() + item->Type() + folder.Read("film.mov.051"), "????????second");
}

// Opening a pipe would wait for its other end for ever.
TEST(Files, OnlyPlainFilesAreOpened) {
    const TestFolder folder;
    ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
    std::filesystem::create_directory(folder.Path("folder"));
    folder.Write("file", "x");
    for (const char* name : {"pipe", "folder", "missing"}) {
        EXPECT_TRUE(folder.Item(name)->OpenAsBinaryFile(false).IsNil()) << name;
        EXPECT_TRUE(folder.Item(name)->OpenAsBinaryFile(true).IsNil()) << name;
        EXPECT_TRUE(folder.Item(name)->OpenAsTextFile().IsNil()) << name;
        EXPECT_EQ(folder.Item(name)->Length(), 0U) << name;
    }
    for (const Ref<FolderItem>& item : {folder.Item("pipe"), folder.Item("folder"), folder.Item("file")->Child("x")})
        EXPECT_TRUE(item->CreateBinaryFile("").IsNil()) << item->AbsolutePath();
    EXPECT_TRUE(folder.Item("file")->CreateNewBinaryFile("").IsNil());
    EXPECT_EQ(folder.Read("file"), "x") << "nothing that is there is emptied";
}

int leased = -1;

// Its holder is asked by a signal to give a lease back.
TEST(Files, AFileUnderALeaseIsWaitedFor) {
    const TestFolder folder;
    folder.Write("file", "x");
    leased = open(folder.Path("file").c_str(), O_RDONLY | O_CLOEXEC);
    if (fcntl(leased, F_SETLEASE, F_WRLCK) != 0)
        GTEST_SKIP() << "no leases here";
    std::signal(SIGIO, [](int) { fcntl(leased, F_SETLEASE, F_UNLCK); });
    EXPECT_EQ(folder.Item("file")->OpenAsBinaryFile(false)->Read(1), "x");
    close(leased);
}

TEST(Files, ReadsLinesOfEveryKind) {
    const std::pair<std::string, Names> table[] = {{"", {}},
                                                   {"a\nb\rc\r\nd", {"a", "b", "c", "d"}},
                                                   {"a\n\nb\r\rc\r\n\r\n", {"a", "", "b", "", "c", ""}},
                                                   {"a\n\rnul\0in\xFF\r"s, {"a", "", "nul\0in\xFF"s}}};
    const TestFolder folder;
    for (const auto& [text, lines] : table) {
        folder.Write("lines", text);
        const Ref<TextInputStream> stream = folder.Item("lines")->OpenAsTextFile();
        Names read;
        while (!stream->AtEOF())
            read.push_back(stream->ReadLine());
        EXPECT_EQ(read, lines);
    }
}

} // namespace
