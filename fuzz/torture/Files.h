#pragma once

#include <cstdint>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace Torture {

// What lies somewhere, followed nowhere.
struct Entry {
    std::string name; // in the Trash the one that it had
    std::string path;
    struct stat status {};
};

std::vector<Entry> EntriesIn(const std::string& folder);
// Of a Trash, by the records that it keeps.
std::vector<Entry> TrashedIn(const std::string& trash);

// Of a file or of a link; empty for all else.
std::string BytesOf(const Entry& entry);
// Bytes that come nowhere else, however often this is called.
std::string FreshBytes(std::size_t size);
// Makes the file, with times of its own that nobody else would give it. False where there is no room for it.
bool Make(const std::string& path, const std::string& bytes);
// Opens for writing what is still the same file; below 0 if it is not.
int OpenSame(const Entry& entry);
// How many bytes there was room for at the end of the file.
std::size_t Append(int file, const std::string& bytes);
// False where something has that name.
bool MoveToFreeName(const std::string& from, const std::string& to);
// False where one of them is not there.
bool Exchange(const std::string& one, const std::string& other);

// "film.mov", 7 gives "film.mov.007".
std::string NumberedPart(const std::string& base, uint32_t number);
// Of such a name, below 0 for any other.
int64_t NumberIn(const std::string& name, const std::string& base);
// "my.film.mov", 1 gives "my 1.film.mov", "film" gives " 1film".
std::string Variant(const std::string& name, uint32_t number);

} // namespace Torture
