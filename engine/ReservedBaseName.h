#pragma once

#include <string>

class FolderItem;

// A base name that one cut has settled on and of which no part exists yet: no other cut may settle on it meanwhile. Any
// thread.
class ReservedBaseName {
public:
    ReservedBaseName(const FolderItem& folder, const std::string& base);
    ~ReservedBaseName();
    ReservedBaseName(const ReservedBaseName&) = delete;
    ReservedBaseName& operator=(const ReservedBaseName&) = delete;

    static bool Is(const FolderItem& folder, const std::string& base);

private:
    const std::string path_;
};
