// Any bytes as the texts of a language: they are read without a fault, and each key gives the text that its file says.

#include "framework/files/FolderItem.h"
#include "framework/text/Text.h"
#include "fuzz/OwnFile.h"
#include "settings/Multilingual.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

constexpr std::size_t kAskedAtMost = 64;

using Entries = std::vector<std::pair<std::string, std::string>>;

const std::array<std::string, 4> kPlaceholders{"<!%PLACEHOLDER#2%!>\\n", "two\\n", "3", "4"};

bool Same(std::string_view one, std::string_view other) {
    return RuntimeStringCompare(one, other) == 0;
}

void TakeEntry(std::string_view line, Entries& entries) {
    const std::size_t cut = line.find(": ");
    if (cut == std::string_view::npos)
        return; // an entry without a key
    std::string_view key = line.substr(0, cut);
    if (const std::size_t blank = key.find(' '); blank != std::string_view::npos) {
        if (!Same(key.substr(0, blank), "MAC"))
            return;
        key = key.substr(blank + 1);
        key = key.substr(0, key.find(' '));
    }
    if (!key.empty())
        entries.emplace_back(key, line.substr(cut + 2));
}

Entries EntriesOf(std::string_view text) {
    Entries entries;
    bool inComment = false;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
        const std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(text.size(), end + (text.substr(end, 2) == "\r\n" ? 2 : 1)));
        if (line == "/*" || line == "*/")
            inComment = line == "/*";
        else if (!inComment && !line.starts_with("//"))
            TakeEntry(line, entries);
    }
    return entries;
}

// The text of the first entry with that key, with its placeholders filled in, or empty.
std::string TextOf(const std::string& key, const Entries& entries) {
    const auto entry =
        std::find_if(entries.begin(), entries.end(), [&key](const auto& each) { return Same(each.first, key); });
    std::string text = entry == entries.end() ? std::string() : entry->second;
    for (std::size_t i = 0; i < kPlaceholders.size(); ++i) {
        const std::string placeholder = "<!%PLACEHOLDER#" + std::to_string(i + 1) + "%!>";
        if (const std::size_t at = text.find(placeholder); at != std::string::npos)
            text.replace(at, placeholder.size(), kPlaceholders[i]);
    }
    for (std::size_t at = 0; (at = text.find("\\n", at)) != std::string::npos; ++at)
        text.replace(at, 2, "\n");
    return text;
}

std::string Asked(const std::string& key) {
    return Multilingual::GetString(key, kPlaceholders[0], kPlaceholders[1], kPlaceholders[2], kPlaceholders[3]);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
    static auto& keyOfTheLast = *new std::string("Key"); // nobody asks for an empty one
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto file = New<FolderItem>(OwnFolder() / "strings.txt");
    WriteOwnFile(file->AbsolutePath(), text);
    Multilingual::LoadLanguageFile(file);

    const Entries entries = EntriesOf(text);
    Require(Asked(keyOfTheLast) == TextOf(keyOfTheLast, entries)); // nothing is left of another language
    for (std::size_t i = 0; i < std::min(entries.size(), kAskedAtMost); ++i) {
        keyOfTheLast = entries[i].first;
        Require(Asked(keyOfTheLast) == TextOf(keyOfTheLast, entries));
        Require(Asked(FoldedCase(keyOfTheLast)) == Asked(keyOfTheLast));
    }
    return 0;
}
