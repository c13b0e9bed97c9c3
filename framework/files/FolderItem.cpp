#include "framework/files/FolderItem.h"

#include "framework/base/Program.h"
#include "framework/base/Random.h"
#include "framework/desktop/Desktop.h"
#include "framework/files/BinaryStream.h"
#include "framework/files/FileType.h"
#include "framework/files/ReplacingStream.h"
#include "framework/files/SpecialFolder.h"
#include "framework/files/TextStream.h"
#include "framework/files/Trash.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <tuple>

namespace {

constexpr const char* kTypeAttribute = "type";
constexpr const char* kCreatorAttribute = "creator";
constexpr std::size_t kCodeSize = 4;
constexpr off_t kBeginning = off_t{1} * 1024 * 1024;

bool GoesUp(const std::filesystem::path& path) {
    return std::find(path.begin(), path.end(), "..") != path.end();
}

// Absolute, without "." and "..", and without following a link in the last component: a link is an entry of its own.
std::string CleanPath(const std::string& path) {
    if (path.empty())
        return {};
    std::error_code failure;
    std::filesystem::path whole = std::filesystem::absolute(path, failure);
    if (GoesUp(whole)) {
        const auto folder = std::filesystem::weakly_canonical(whole.parent_path(), failure);
        whole = (failure ? whole.parent_path() : folder) / whole.filename();
    }
    std::string clean = whole.lexically_normal().string();
    while (clean.size() > 1 && clean.back() == '/')
        clean.pop_back();
    return clean;
}

bool IsEntryName(const std::string& name) {
    return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos &&
           name.find('\0') == std::string::npos;
}

std::string FullName(const char* attribute) {
    return "user." + ThisProgram().FileName + "." + attribute;
}

std::string ReadCode(const std::string& path, const char* attribute) {
    std::array<char, kCodeSize> code{};
    const ssize_t size = getxattr(path.c_str(), FullName(attribute).c_str(), code.data(), code.size());
    return size == ssize_t(kCodeSize) ? std::string(code.data(), code.size()) : kNoFileCode;
}

bool StandsForNone(const std::string& code) {
    return code.empty() || code == kNoFileCode || code == "    ";
}

void WriteCode(const std::string& path, const char* attribute, const std::string& code) {
    if (StandsForNone(code))
        removexattr(path.c_str(), FullName(attribute).c_str());
    else
        setxattr(path.c_str(), FullName(attribute).c_str(), code.data(), code.size(), 0);
}

void WriteCode(int newFile, const char* attribute, const std::string& code) {
    if (!StandsForNone(code))
        fsetxattr(newFile, FullName(attribute).c_str(), code.data(), code.size(), 0);
}

bool IsPlain(int descriptor) {
    struct stat status = {};
    return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

// Fails for links and for files that another program has a lease on, else as OpenPlain, for half the time. O_NONBLOCK
// means nothing to reads of a plain file.
int OpenToReadAtOnce(const std::string& path) {
    struct stat status = {};
    if (lstat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
        return -1;
    const int descriptor = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC);
    if (descriptor < 0 || IsPlain(descriptor))
        return descriptor;
    close(descriptor); // something else has come in its place since
    return -1;
}

// Opens plain files only: a pipe or a device could make the caller wait for ever. Whoever waits at the other end of a
// pipe would take even an open and a close for the partner that comes and goes, so this looks before it opens.
int OpenPlain(const std::string& path, int flags) {
    const int found = open(path.c_str(), O_PATH | O_CLOEXEC | (flags & O_NOFOLLOW));
    if (found < 0)
        return -1;
    const bool plain = IsPlain(found);
    // By way of the descriptor, so that it is the same file. Another program may have a lease on it (a server does, for
    // a client that keeps a copy): this waits until that is given back, which the system sees to.
    const std::string same = "/proc/self/fd/" + std::to_string(found);
    int descriptor = -1;
    do
        descriptor = plain ? open(same.c_str(), (flags & ~O_NOFOLLOW) | O_CLOEXEC) : -1;
    while (plain && descriptor < 0 && errno == EINTR);
    close(found);
    return descriptor;
}

int OpenPlainToRead(const std::string& path) {
    const int descriptor = OpenToReadAtOnce(path);
    return descriptor >= 0 ? descriptor : OpenPlain(path, O_RDONLY);
}

// Fails where anything is there, a link that leads nowhere included.
int CreatePlain(const std::string& path) {
    return open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
}

// Where a link leads, by way of further ones, whether or not anything is there. Empty for links that run in a circle.
std::string EndOfLinks(const std::string& path) {
    constexpr int kMostLinks = 40; // as the system has it
    std::filesystem::path end = path;
    std::error_code noLink;
    for (int i = 0; i < kMostLinks; ++i) {
        const std::filesystem::path next = std::filesystem::read_symlink(end, noLink);
        if (noLink)
            return end.string();
        end = end.parent_path() / next;
    }
    return {};
}

bool IsPlainAndWritable(const std::string& path) {
    const int descriptor = OpenPlain(path, O_WRONLY);
    if (descriptor >= 0)
        close(descriptor);
    return descriptor >= 0;
}

// Gives a new file the codes of the type of that name, which may be none.
void WriteCodes(int descriptor, const std::string& fileTypeName) {
    const Ref<FileType> type = FileType::Named(fileTypeName);
    if (type.IsNil())
        return;
    WriteCode(descriptor, kTypeAttribute, type->MacType);
    WriteCode(descriptor, kCreatorAttribute, type->MacCreator);
}

} // namespace

FolderItem::FolderItem(const std::string& path) : path_(CleanPath(path)) {}

Ref<FolderItem> FolderItem::Child(const std::string& name) const {
    auto child = New<FolderItem>("");
    if (!path_.empty() && IsEntryName(name))
        child->path_ = (path_ == "/" ? path_ : path_ + "/") + name;
    return child;
}

const std::vector<std::string>& FolderItem::Listing() const {
    std::call_once(listed_, [this] {
        listing_ = std::make_unique<std::vector<std::string>>();
        AnyName([this](const std::string& name) {
            listing_->push_back(name);
            return false;
        });
    });
    return *listing_;
}

bool FolderItem::AnyName(const std::function<bool(const std::string&)>& matches) const {
    DIR* const folder = path_.empty() ? nullptr : opendir(path_.c_str());
    if (folder == nullptr)
        return false;
    bool found = false;
    while (const dirent* entry = found ? nullptr : readdir(folder)) {
        const std::string name = entry->d_name;
        found = IsEntryName(name) && matches(name);
    }
    closedir(folder);
    return found;
}

int32_t FolderItem::Count() const {
    return static_cast<int32_t>(Listing().size());
}

Ref<FolderItem> FolderItem::Item(int32_t index) const {
    return Child(Listing().at(static_cast<std::size_t>(index) - 1));
}

std::string FolderItem::Name() const {
    return path_.substr(path_.rfind('/') + 1);
}

Ref<FolderItem> FolderItem::Parent() const {
    const std::size_t slash = path_.rfind('/');
    if (slash == std::string::npos || path_ == "/")
        return nullptr;
    auto parent = New<FolderItem>("");
    parent->path_ = slash == 0 ? "/" : path_.substr(0, slash);
    return parent;
}

bool FolderItem::Exists() const {
    struct stat status = {};
    return !path_.empty() && lstat(path_.c_str(), &status) == 0;
}

std::optional<EntryStatus> FolderItem::Status() const {
    struct stat status = {};
    if (path_.empty() || lstat(path_.c_str(), &status) != 0)
        return std::nullopt;
    return EntryStatus{status.st_dev, status.st_ino, static_cast<uint64_t>(status.st_size), S_ISREG(status.st_mode)};
}

bool FolderItem::Directory() const {
    struct stat status = {};
    return !path_.empty() && stat(path_.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

uint64_t FolderItem::Length() const {
    struct stat status = {};
    if (path_.empty() || stat(path_.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
        return 0;
    return static_cast<uint64_t>(status.st_size);
}

std::string FolderItem::Type() const {
    if (Directory())
        return {};
    Ref<FileType> type = FileType::WithCode(MacType());
    if (type.IsNil())
        type = FileType::WithExtensionOf(Name());
    return type.IsNil() ? std::string() : type->Name;
}

std::string FolderItem::MacType() const {
    return ReadCode(path_, kTypeAttribute);
}

std::string FolderItem::MacCreator() const {
    return ReadCode(path_, kCreatorAttribute);
}

void FolderItem::SetMacType(const std::string& code) const {
    WriteCode(path_, kTypeAttribute, code);
}

void FolderItem::SetMacCreator(const std::string& code) const {
    WriteCode(path_, kCreatorAttribute, code);
}

Ref<BinaryStream> FolderItem::OpenAsBinaryFile(bool forWriting) const {
    const int descriptor = forWriting ? OpenPlain(path_, O_RDWR | O_NOFOLLOW) : OpenPlainToRead(path_);
    return descriptor < 0 ? nullptr : New<BinaryStream>(descriptor);
}

void FolderItem::BeginToRead() const {
    const int descriptor = OpenToReadAtOnce(path_); // waits for no lease
    if (descriptor < 0)
        return;
    std::ignore = posix_fadvise(descriptor, 0, kBeginning, POSIX_FADV_WILLNEED);
    close(descriptor);
}

Ref<BinaryStream> FolderItem::CreateBinaryFile(const std::string& fileTypeName) const {
    const int descriptor = CreatePlain(path_);
    if (descriptor < 0)
        return nullptr;
    WriteCodes(descriptor, fileTypeName);
    return New<BinaryStream>(descriptor);
}

Ref<BinaryStream> FolderItem::ReplaceBinaryFile(const std::string& fileTypeName) const {
    const std::string place = EndOfLinks(path_);
    struct stat older = {};
    const bool replaces = lstat(place.c_str(), &older) == 0;
    if (place.empty() || (replaces && !IsPlainAndWritable(place)))
        return nullptr;
    const std::string beside = place + "." + std::to_string(Random().InRange(0, INT32_MAX));
    const int descriptor = CreatePlain(beside);
    if (descriptor < 0)
        return nullptr;
    if (replaces) {
        std::ignore = fchown(descriptor, older.st_uid, older.st_gid);
        fchmod(descriptor, older.st_mode & ALLPERMS);
    }
    WriteCodes(descriptor, fileTypeName);
    return New<ReplacingStream>(descriptor, beside, place);
}

Ref<TextInputStream> FolderItem::OpenAsTextFile() const {
    const int descriptor = OpenPlainToRead(path_);
    return descriptor < 0 ? nullptr : New<TextInputStream>(descriptor);
}

Ref<TextOutputStream> FolderItem::CreateTextFile() const {
    int descriptor = CreatePlain(path_);
    if (descriptor < 0 && errno == EEXIST)
        descriptor = OpenPlain(path_, O_WRONLY | O_TRUNC | O_NOFOLLOW);
    return descriptor < 0 ? nullptr : New<TextOutputStream>(descriptor);
}

void FolderItem::Delete() const {
    if (!path_.empty())
        std::remove(path_.c_str());
}

void FolderItem::MoveFileTo(const Ref<FolderItem>& destination) const {
    if (path_.empty())
        return;
    if (destination == SpecialFolder::Trash()) {
        MoveToTrash(path_);
        return;
    }
    const std::string target = destination->Child(Name())->path_;
    renameat2(AT_FDCWD, path_.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE);
}

void FolderItem::Launch(bool) const {
    if (!path_.empty())
        OpenFiles({path_});
}
