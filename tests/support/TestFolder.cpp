#include "tests/support/TestFolder.h"

#include "framework/base/Program.h"
#include "tests/support/Waiting.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <sys/wait.h>

namespace {

namespace fs = std::filesystem;

std::string home;

std::string NewFolder(const std::string& parent) {
    fs::create_directories(parent);
    std::string path = parent + "/XXXXXX";
    if (mkdtemp(path.data()) == nullptr)
        std::abort();
    return path;
}

} // namespace

std::vector<std::string> NamesIn(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code missing;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, missing))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

void EnterPrivateHome() {
    home = NewFolder(PathBesideProgram("../homes"));
    unsetenv("DBUS_SESSION_BUS_ADDRESS");
    for (const auto& [name, value] : {std::pair<const char*, std::string>("HOME", home),
                                      {"XDG_RUNTIME_DIR", home},
                                      {"XDG_DATA_HOME", home + "/data"},
                                      {"XDG_CONFIG_HOME", home + "/config"},
                                      {"XDG_CACHE_HOME", home + "/cache"},
                                      {"LC_ALL", "C.UTF-8"},
                                      {"LANGUAGE", ""},
                                      {"QT_QPA_PLATFORM", "offscreen"}})
        setenv(name, value.c_str(), 1);
}

void LeavePrivateHome() {
    AskedOfDesktop(); // helpers may still be writing
    fs::remove_all(home);
}

std::vector<std::string> TrashedNames() {
    return NamesIn(home + "/data/Trash/files");
}

void EmptyTrash() {
    fs::remove_all(home + "/data/Trash");
}

std::string AskedOfDesktop() {
    siginfo_t helper{};
    const auto noneIsLeft = [&helper] { return waitid(P_ALL, 0, &helper, WEXITED | WNOHANG | WNOWAIT) != 0; };
    EXPECT_TRUE(WaitUntil(noneIsLeft)) << "a helper that has ended is reaped";
    const std::string requests = ReadFile(home + "/asked");
    fs::remove(home + "/asked");
    return requests;
}

TestFolder::TestFolder() : TestFolder(home + "/files") {}

TestFolder::TestFolder(const std::string& parent) : path_(NewFolder(parent)) {}

void TestFolder::WriteSparse(const std::string& name, uint64_t size) const {
    const std::ofstream made(Path(name), std::ios::app);
    fs::resize_file(Path(name), size);
}

FileSizeLimit::FileSizeLimit(uint64_t bytes) {
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit small{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
}
