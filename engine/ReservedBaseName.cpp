#include "engine/ReservedBaseName.h"

#include "framework/base/Immortal.h"
#include "framework/files/FolderItem.h"
#include "framework/text/Text.h"

#include <mutex>
#include <set>

namespace {

std::mutex mutex;
const Immortal<std::multiset<std::string>> reserved;

// The file system may take other letters for the same name.
std::string PathOf(const FolderItem& folder, const std::string& base) {
    return FoldedCase(folder.Child(base)->AbsolutePath());
}

} // namespace

ReservedBaseName::ReservedBaseName(const FolderItem& folder, const std::string& base) : path_(PathOf(folder, base)) {
    const std::lock_guard lock(mutex);
    reserved->insert(path_);
}

ReservedBaseName::~ReservedBaseName() {
    const std::lock_guard lock(mutex);
    reserved->erase(reserved->find(path_));
}

bool ReservedBaseName::Is(const FolderItem& folder, const std::string& base) {
    const std::string path = PathOf(folder, base);
    const std::lock_guard lock(mutex);
    return reserved->contains(path);
}
