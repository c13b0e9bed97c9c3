#include "settings/Multilingual.h"

#include "framework/base/Immortal.h"
#include "framework/base/Program.h"
#include "framework/files/FolderItem.h"
#include "framework/files/TextStream.h"
#include "framework/text/Text.h"

#include <string>
#include <unordered_map>

namespace {

// By key, its case folded away.
const Immortal<std::unordered_map<std::string, std::string>> StringValue;

constexpr const char* kCommentBegins = "/*";
constexpr const char* kCommentEnds = "*/";
constexpr const char* kLineComment = "//";
constexpr const char* kSeparator = ": ";
constexpr const char* kOwnTag = kWindowsVariant ? "WIN" : "MAC";
constexpr const char* kLineBreak = "\\n"; // as it is spelled in the files: backslash, n

bool Same(const std::string& one, const std::string& other) {
    return RuntimeStringCompare(one, other) == 0;
}

// Of two entries with one key the first counts.
void Append(const std::string& key, const std::string& value) {
    StringValue->try_emplace(FoldedCase(key), value);
}

// "Key: text", or "TAG Key: text". A line without a separator becomes an entry with an empty key, which nobody asks
// for.
void AddEntry(const std::string& line) {
    const int32_t cut = InStr(0, line, kSeparator);
    const std::string name = Left(line, cut - 1);
    const std::string value = Mid(line, cut + 2);
    if (InStr(0, name, " ") == 0)
        Append(name, value);
    else if (Same(NthField(name, " ", 1), kOwnTag))
        Append(NthField(name, " ", 2), value);
}

// Sorts the lines of a file into comments and entries.
class LineReader {
public:
    void Take(const std::string& line) {
        if (Same(line, kCommentBegins))
            inComment_ = true;
        else if (Same(line, kCommentEnds))
            inComment_ = false;
        else if (!inComment_ && !line.empty() && !Same(Left(line, 2), kLineComment))
            AddEntry(line);
    }

private:
    bool inComment_ = false;
};

} // namespace

void Multilingual::LoadLanguageFile(const Ref<FolderItem>& file) {
    StringValue->clear();
    const Ref<TextInputStream> stream = Required(file->OpenAsTextFile(), "can't open " + file->AbsolutePath());
    LineReader reader;
    // A line may still hold a line feed: then the first one goes, and only that.
    // No yield in this loop: nobody may see half a language.
    while (!stream->AtEOF())
        reader.Take(Replace(stream->ReadLine(), Chr(10), ""));
    stream->Close();
}

std::string Multilingual::GetString(const std::string& key, const std::string& placeholder1,
                                    const std::string& placeholder2, const std::string& placeholder3,
                                    const std::string& placeholder4) {
    const auto entry = StringValue->find(FoldedCase(key));
    std::string text = entry == StringValue->end() ? std::string() : entry->second;
    // Each once, one after the other, over the text as it has become: a value may itself hold a later placeholder.
    text = Replace(text, "<!%PLACEHOLDER#1%!>", placeholder1);
    text = Replace(text, "<!%PLACEHOLDER#2%!>", placeholder2);
    text = Replace(text, "<!%PLACEHOLDER#3%!>", placeholder3);
    text = Replace(text, "<!%PLACEHOLDER#4%!>", placeholder4);
    return ReplaceAll(text, kLineBreak, EndOfLine());
}
