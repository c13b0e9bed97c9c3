#pragma once

#include "framework/base/Ref.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

class BinaryStream;
class Picture;
class Sound;
class TextInputStream;
class TextOutputStream;

// An entry at one moment. Two are equal if the same file stood there both times, with the same length.
struct EntryStatus {
    uint64_t Device, Number; // tell a file from all others for as long as it exists
    uint64_t Length;         // bytes
    bool Plain;              // a file, and not a link to one

    bool operator==(const EntryStatus&) const = default;
};

// A handle on a path that need not exist. Names and paths are the bytes that the system gave, valid UTF-8 or not.
// Apart from the listing behind Count and Item, a handle holds no state: each call asks the file system anew. Safe on
// every thread. Failures surface as nil, false, 0 or an empty text.
class FolderItem : public Object {
public:
    // `path` is made absolute against the working folder; an empty one is a handle on nothing.
    explicit FolderItem(const std::string& path);

    // The entry of that name inside this folder, existing or not. A name that is empty, is "." or "..", or holds a "/"
    // or a zero byte gives an item that does not exist and can't be made: no path leaves its folder.
    Ref<FolderItem> Child(const std::string& name) const;

    // The folder's entries, 1 to Count(); another index is an out-of-range failure. The folder is read once per handle,
    // at the first use of either.
    int32_t Count() const;
    Ref<FolderItem> Item(int32_t index) const;

    // Whether the folder holds an entry now whose name `matches`. Reads up to the first one, and names only.
    bool AnyName(const std::function<bool(const std::string&)>& matches) const;

    std::string Name() const;
    Ref<FolderItem> Parent() const; // nil at the root
    const std::string& AbsolutePath() const { return path_; }

    bool Exists() const; // a link that leads nowhere is there too
    std::optional<EntryStatus> Status() const;
    bool Directory() const;
    uint64_t Length() const; // bytes; 0 for what is not a file

    // Name of the registered FileType whose code the file carries, else of the one that has its extension, else empty.
    // A folder has none.
    std::string Type() const;
    std::string MacType() const; // four characters, "????" where none is set
    std::string MacCreator() const;
    void SetMacType(const std::string& code) const; // "????" or four blanks take the code away
    void SetMacCreator(const std::string& code) const;

    // Opens a plain file's data, for reading or for reading and writing; nil when that fails, and for writing also when
    // the file is a link.
    Ref<BinaryStream> OpenAsBinaryFile(bool forWriting) const;
    // Has the system begin to read the first mebibyte of a plain file, no link, into memory. Does not wait for it.
    void BeginToRead() const;
    // Makes a new empty file with the codes of the registered type of that name, and opens it for writing; nil when
    // that fails, and when anything is there: nothing is emptied, and no link followed.
    Ref<BinaryStream> CreateBinaryFile(const std::string& fileTypeName) const;
    // The same, but a file that is there is replaced as a whole when the stream is closed, and only if all could be
    // written (see ReplacingStream). The new file has the older one's owner and permissions; a link stays, and what it
    // leads to is replaced. Nil also when the file that is there may not be written.
    Ref<BinaryStream> ReplaceBinaryFile(const std::string& fileTypeName) const;
    Ref<TextInputStream> OpenAsTextFile() const; // nil when that fails
    // Makes a new empty text file, or empties the one that is there; nil when that fails, and when a link is there.
    Ref<TextOutputStream> CreateTextFile() const;
    Ref<Picture> OpenAsPicture() const; // nil when that fails; main thread
    Ref<Sound> OpenAsSound() const;     // nil when there is no such file; main thread

    void Delete() const;
    // Moves the entry into a folder under its own name, never over another entry. SpecialFolder::Trash() is the
    // desktop's trash, which numbers the names that are taken. What can't be moved stays where it is.
    void MoveFileTo(const Ref<FolderItem>& destination) const;
    // Opens the entry with the application that the desktop has for it. Returns at once.
    void Launch(bool activate) const;

private:
    // Not by std::filesystem, which makes a path of each entry: 95 ms for 100,000 names, in place of 52.
    const std::vector<std::string>& Listing() const;

    std::string path_; // empty: a handle on nothing
    mutable std::once_flag listed_;
    mutable std::unique_ptr<std::vector<std::string>> listing_;
};
