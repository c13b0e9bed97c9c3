#include "framework/files/FileType.h"

#include "framework/base/Immortal.h"
#include "framework/text/Text.h"

#include <algorithm>
#include <mutex>
#include <shared_mutex>
#include <vector>

namespace {

// Written at start-up, read by every thread that creates a file.
std::shared_mutex registryMutex;

std::vector<Ref<FileType>>& Registry() {
    static const Immortal<std::vector<Ref<FileType>>> types;
    return *types;
}

template <class Test>
Ref<FileType> FirstRegistered(Test&& test) {
    const std::shared_lock lock(registryMutex);
    const auto& types = Registry();
    const auto found = std::find_if(types.begin(), types.end(), test);
    return found == types.end() ? nullptr : *found;
}

bool ListsExtension(const std::string& extensions, const std::string& extension) {
    for (std::size_t from = 0; from < extensions.size();) {
        const std::size_t end = std::min(extensions.find(';', from), extensions.size());
        if (RuntimeStringCompare(std::string_view(extensions).substr(from, end - from), extension) == 0)
            return true;
        from = end + 1;
    }
    return false;
}

} // namespace

std::string FileType::Operator_Convert() {
    const Ref<FileType> self = Self(this);
    if (!FirstRegistered([&self](const Ref<FileType>& type) { return type == self; }).IsNil())
        return Name;
    const std::unique_lock lock(registryMutex);
    Registry().push_back(self);
    return Name;
}

Ref<FileType> FileType::Named(const std::string& name) {
    return FirstRegistered([&](const Ref<FileType>& type) { return type->Name == name; });
}

Ref<FileType> FileType::WithCode(const std::string& macType) {
    if (macType == kNoFileCode)
        return nullptr;
    return FirstRegistered([&](const Ref<FileType>& type) { return type->MacType == macType; });
}

Ref<FileType> FileType::WithExtensionOf(const std::string& fileName) {
    const std::size_t point = fileName.rfind('.');
    if (point == std::string::npos)
        return nullptr;
    const std::string extension = fileName.substr(point);
    return FirstRegistered([&](const Ref<FileType>& type) { return ListsExtension(type->Extensions, extension); });
}
