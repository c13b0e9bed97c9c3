// Any bytes as a file of preferences: they are read as the file says or as the defaults, and what is saved is what is
// read the next time.

#include "engine/FileTypes.h"
#include "framework/windows/Keyboard.h"
#include "fuzz/OwnFile.h"
#include "settings/claPreferences.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <tuple>

// In place of the program's own, which asks a display.
bool Keyboard::AsyncShiftKey() {
    return false;
}

namespace {

constexpr std::size_t kLongestLanguage = 255;

using Settings = std::tuple<std::string, bool, bool, bool, bool, bool>;

Settings Of(const claPreferences& preferences) {
    return {preferences.Language,         preferences.AutoQuit,       preferences.LaunchArchives,
            preferences.MovePartsToTrash, preferences.ShowFilesAfter, preferences.SearchForUpdates};
}

// A text behind a byte that tells its length, as far as it goes.
std::string_view TakeText(std::string_view& bytes) {
    if (bytes.empty())
        return {};
    const std::string_view text = bytes.substr(1, static_cast<unsigned char>(bytes.front()));
    bytes.remove_prefix(1 + text.size());
    return text;
}

Settings SettingsIn(std::string_view bytes, const std::string& version) {
    if (TakeText(bytes) != version)
        return {"", true, true, true, true, true};
    const std::string language(TakeText(bytes));
    const auto at = [bytes](std::size_t place) { return place < bytes.size() && bytes[place] != '\0'; };
    return {language, at(0), at(1), at(2), at(3), at(4)};
}

Settings Loaded() {
    claPreferences preferences;
    preferences.Load();
    return Of(preferences);
}

} // namespace

// The first byte says whether the version is the program's own.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    static const bool isReady = [] {
        InitFileTypes();
        return setenv("XDG_CONFIG_HOME", OwnFolder().c_str(), 1) == 0;
    }();
    Require(isReady);
    if (size == 0)
        return 0;

    claPreferences preferences;
    preferences.Save(); // which is where the file is
    const std::string version = preferences.PreferencesVersion;
    std::string bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
    if ((data[0] & 1) != 0)
        bytes.insert(0, static_cast<char>(version.size()) + version);
    WriteOwnFile(std::filesystem::directory_iterator(OwnFolder())->path(), bytes);

    preferences.Load();
    Require(Of(preferences) == SettingsIn(bytes, version));
    Require(preferences.Language.size() <= kLongestLanguage);
    preferences.Save();
    Require(Loaded() == Of(preferences));
    preferences.Language = bytes;
    preferences.AutoQuit = !preferences.AutoQuit;
    preferences.Save();
    preferences.Language = bytes.substr(0, kLongestLanguage);
    Require(Loaded() == Of(preferences));
    return 0;
}
