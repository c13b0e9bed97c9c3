#pragma once

#include "framework/files/FolderItem.h"
#include "tests/support/Bytes.h"

#include <cstdint>
#include <string>
#include <sys/resource.h>
#include <vector>

// Gives the process a home of its own beside the tests, and with it a Trash and preferences that are real and private.
// To be called before anything asks for them.
void EnterPrivateHome();
void LeavePrivateHome();

std::vector<std::string> NamesIn(const std::string& folder); // sorted; none if there is no such folder
std::vector<std::string> TrashedNames();
void EmptyTrash();
// What the desktop was asked since the last call, one request a line: "reveal /path", "open /path".
std::string AskedOfDesktop();

// A folder for one test, gone with it.
class TestFolder {
public:
    TestFolder(); // on the disk of the build
    explicit TestFolder(const std::string& parent);
    ~TestFolder() { std::filesystem::remove_all(path_); }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    const std::string& Path() const { return path_; }
    std::string Path(const std::string& name) const { return path_ + "/" + name; }
    Ref<FolderItem> Item(const std::string& name) const { return New<FolderItem>(path_)->Child(name); }
    std::vector<std::string> Names() const { return NamesIn(path_); } // sorted

    void Write(const std::string& name, const std::string& bytes) const { WriteFile(Path(name), bytes); }
    // Gives a new or an existing file that size, without room on the disk for it.
    void WriteSparse(const std::string& name, uint64_t size) const;
    std::string Read(const std::string& name) const { return ReadFile(Path(name)); }

private:
    std::string path_;
};

// While one of these lives, no file of this process grows beyond that size: writes fail, as on a full disk.
class FileSizeLimit {
public:
    explicit FileSizeLimit(uint64_t bytes);
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &before_); }

private:
    rlimit before_{};
};
