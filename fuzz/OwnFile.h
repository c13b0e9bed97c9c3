#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

// Ends the process where something does not hold that has to.
inline void Require(bool holds) {
    if (!holds)
        std::abort();
}

// A folder of this process in memory, as a disk would be the slowest part of all. Goes with it, unless an input makes
// it fail.
inline const std::filesystem::path& OwnFolder() {
    static const auto& folder = *new std::filesystem::path([] {
        std::string path = "/dev/shm/ombrivel-fuzz-XXXXXX";
        Require(mkdtemp(path.data()) != nullptr);
        std::atexit([] { std::filesystem::remove_all(OwnFolder()); });
        return path;
    }());
    return folder;
}

inline void WriteOwnFile(const std::filesystem::path& file, std::string_view bytes) {
    std::ofstream stream(file, std::ios::binary);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    Require(static_cast<bool>(stream.flush()));
}
