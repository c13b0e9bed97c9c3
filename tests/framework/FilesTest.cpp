#include "bench/Scratch.h"
#include "engine/FileTypes.h"
#include "framework/files/BinaryStream.h"
#include "framework/files/FileUri.h"
#include "framework/files/SpecialFolder.h"
#include "framework/files/TextStream.h"
#include "framework/text/Number.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>
#include <linux/magic.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace {

using namespace std::string_literals;
using Names = std::vector<std::string>;

bool onServer = false; // as files seem to lie
int delegated = 0;     // pieces that the system was asked to move

// How often this thread has written so far.
int WriteCalls() {
    const std::string counts = ReadFile("/proc/thread-self/io");
    return static_cast<int>(Val(counts.substr(counts.find("syscw: ") + 7)));
}

} // namespace

// Stand in front of the library's.
extern "C" int fstatfs(int descriptor, struct statfs* status) noexcept {
    const auto result = static_cast<int>(syscall(SYS_fstatfs, descriptor, status));
    if (onServer)
        status->f_type = NFS_SUPER_MAGIC;
    return result;
}

extern "C" ssize_t copy_file_range(int from, off64_t* fromAt, int to, off64_t* toAt, size_t size, unsigned flags) {
    ++delegated;
    return syscall(SYS_copy_file_range, from, fromAt, to, toAt, std::min<size_t>(size, 300'000), flags);
}

namespace {

constexpr int32_t kBlock = 1048576;

// Takes a file out of memory. False where that can't be done, or not be seen.
bool Forget(const std::string& file) {
    const int descriptor = open(file.c_str(), O_RDWR | O_CLOEXEC);
    fsync(descriptor);
    posix_fadvise(descriptor, 0, 0, POSIX_FADV_DONTNEED);
    char byte = 0;
    const iovec place{&byte, 1};
    const bool gone = preadv2(descriptor, &place, 1, 0, RWF_NOWAIT) < 0 && errno == EAGAIN;
    close(descriptor);
    return gone;
}

// The Trash keeps a note of its own for each file, for which the longest name leaves no room: such a file stays where
// it is.
TEST(Files, NoNameLeavesItsFolderAndTheLongestNotForTheTrash) {
    const TestFolder folder;
    const std::string longest(255, 'n');
    for (const std::string& name : {""s, "."s, ".."s, "/"s, "a/b"s, "../x"s, "zero\0byte"s, longest + "n"}) {
        EXPECT_FALSE(folder.Item(name)->Exists()) << name;
        EXPECT_TRUE(folder.Item(name)->CreateBinaryFile("").IsNil()) << name;
        folder.Item(name)->MoveFileTo(SpecialFolder::Trash());
        folder.Item(name)->Delete();
    }
    for (const std::string& name : {"~"s, "a\\b"s, longest}) {
        folder.Write(name, name);
        folder.Item(name)->MoveFileTo(SpecialFolder::Trash());
    }
    EXPECT_EQ(folder.Names(), Names{longest});
    const std::string list = "# note\r\nfile:///a%20b\r\nhttp://x/y\r\nfile://elsewhere/c\r\nfile:///%FF";
    EXPECT_EQ(PathsFromUriList(list), (Names{"/a b", "/\xFF"}));
}

TEST(Files, APathKeepsItsLinksButForTheWayUp) {
    const TestFolder folder;
    std::filesystem::create_directories(folder.Path("inner/deep"));
    std::filesystem::create_directory_symlink("inner/deep", folder.Path("link"));
    const std::string base = New<FolderItem>(folder.Path())->AbsolutePath() + "/";
    for (const auto& [path, clean] : {std::pair("link/a..b.001", "link/a..b.001"),
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
    }
    EXPECT_EQ(poll(&reader, 1, 0), 0) << "nobody has come and gone";
    close(reader.fd);
    folder.Write("file", "x");
    leased = open(folder.Path("file").c_str(), O_RDONLY | O_CLOEXEC);
    if (fcntl(leased, F_SETLEASE, F_WRLCK) != 0)
        GTEST_SKIP() << "no leases here";
    sysv_signal(SIGIO, [](int) { fcntl(leased, F_SETLEASE, F_UNLCK); });
    EXPECT_EQ(folder.Item("file")->OpenAsBinaryFile(false)->Read(1), "x");
    close(leased);
}

TEST(Files, AStreamEndsWhereItsFileEndsByNowAndIsClosedOnce) {
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
    EXPECT_TRUE(from->AtEOF() && !other->AtEOF());
}

// What has to come from the disk is read and written, which is cheaper then. Where blocks are shared nothing is
// written. They lie ahead of what has been read: though a file shrinks, as a part may while it is glued, what follows
// has to come behind them. Elsewhere no more room is kept in the end than is needed.
TEST(Files, BytesMoveTheCheapestWayAndWithoutAGapThoughAFileShrinks) {
    const std::string first = Pattern(std::size_t{16} * kBlock);
    const std::string next = Pattern(std::size_t{2} * kBlock);
    for (const auto& [kind, shift, stop] : {std::tuple("disk", 0, false),
                                            {"cold disk", 0, false},
                                            {"server", 0, false},
                                            {"btrfs", 0, false},
                                            {"btrfs", 0, true},
                                            {"xfs", 0, false},
                                            {"xfs", 1, false}}) {
        const TestFolder folder;
        const LoopMount mount(kind, folder.Path(), uint64_t{512} * kBlock);
        const bool shares = kind == "btrfs"s || kind == "xfs"s;
        if (shares && !mount.Mounted())
            GTEST_SKIP() << "no " << kind << " can be mounted here";
        onServer = kind == "server"s;
        delegated = 0;
        WriteFile(mount.Point() + "/1", first);
        WriteFile(mount.Point() + "/2", next);
        const bool cold = kind == "cold disk"s && Forget(mount.Point() + "/1") && Forget(mount.Point() + "/2");
        const FolderItem place(mount.Point());
        const Ref<BinaryStream> whole = place.Child("whole")->CreateBinaryFile("");
        whole->Write(shares ? "" : "x"); // which nothing can be shared behind
        const int writesBefore = WriteCalls();
        for (const char* name : {"1", "2"}) {
            const Ref<BinaryStream> part = place.Child(name)->OpenAsBinaryFile(false);
            part->PrepareToClone(shift, stop);
            int block = 0;
            for (; !part->AtEOF(); ++block) {
                if (block == 4)
                    std::filesystem::resize_file(mount.Point() + "/1", std::size_t{4} * kBlock);
                whole->WriteFrom(*part, kBlock, INT64_MAX);
            }
            EXPECT_EQ(block, name == "2"s ? 2 : std::max(block, 4)) << kind;
        }
        EXPECT_EQ(WriteCalls() == writesBefore, shares && shift == 0 && !stop) << kind;
        EXPECT_EQ(delegated > 0, !shares && !cold) << kind;
        whole->Write("end");
        whole->Close();
        const std::string bytes = ReadFile(mount.Point() + "/whole").substr(shares ? 0 : 1);
        EXPECT_GE(bytes.size(), std::size_t{4} * kBlock + next.size()) << kind;
        EXPECT_TRUE(bytes == first.substr(0, bytes.size() - next.size() - 3) + next + "end") << kind;
        struct stat status = {};
        EXPECT_EQ(stat((mount.Point() + "/whole").c_str(), &status), 0);
        EXPECT_TRUE(shares || status.st_blocks * 512 < status.st_size + kBlock) << kind;
    }
}

} // namespace
