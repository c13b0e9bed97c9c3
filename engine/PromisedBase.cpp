#include "engine/PromisedBase.h"

#include "framework/base/Immortal.h"
#include "framework/files/FolderItem.h"
#include "framework/text/Text.h"

#include <mutex>
#include <set>

namespace {

std::mutex mutex;
const Immortal<std::multiset<std::string>> promised;

// The file system may take other letters for the same name.
std::string PathOf(const FolderItem& folder, const std::string& base) {
    return FoldedCase(folder.Child(base)->AbsolutePath());
}

} // namespace

PromisedBase::PromisedBase(const FolderItem& folder, const std::string& base) : path_(PathOf(folder, base)) {
    const std::lock_guard lock(mutex);
    promised->insert(path_);
}

PromisedBase::~PromisedBase() {
    const std::lock_guard lock(mutex);
    promised->erase(promised->find(path_));
}

bool PromisedBase::Is(const FolderItem& folder, const std::string& base) {
    const std::string path = PathOf(folder, base);
    const std::lock_guard lock(mutex);
    return promised->contains(path);
}
