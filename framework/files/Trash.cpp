#include "framework/files/Trash.h"

#include <dlfcn.h>
#include <gio/gio.h>

namespace {

class FileLibrary {
public:
    FileLibrary() : library_(dlopen("libgio-2.0.so.0", RTLD_NOW | RTLD_LOCAL)) {
        if (library_ == nullptr)
            return;
        Find(newFileForPath, "g_file_new_for_path");
        Find(trashFile, "g_file_trash");
        Find(unref, "g_object_unref");
    }

    bool IsWhole() const { return newFileForPath != nullptr && trashFile != nullptr && unref != nullptr; }

    decltype(&g_file_new_for_path) newFileForPath = nullptr;
    decltype(&g_file_trash) trashFile = nullptr;
    void (*unref)(gpointer object) = nullptr;

private:
    template <class Function>
    void Find(Function& function, const char* name) {
        function = reinterpret_cast<Function>(dlsym(library_, name));
    }

    void* library_; // stays open
};

} // namespace

void MoveToTrash(const std::string& path) {
    static const FileLibrary gio;
    if (!gio.IsWhole())
        return;
    GFile* const file = gio.newFileForPath(path.c_str());
    gio.trashFile(file, nullptr, nullptr);
    gio.unref(file);
}
