#include "engine/PartNames.h"

#include "framework/text/Number.h"
#include "framework/text/Text.h"

#include <string_view>

namespace {

constexpr int32_t kEndingLength = 4; // point and three digits

constexpr std::string_view kPartial = ".part";
constexpr std::size_t kSaltLength = 8;
constexpr std::string_view kSaltCharacters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";

// The name that the browser has put its salt into; empty if this is none of those.
std::string WithoutSalt(const std::string& name) {
    const std::size_t point = name.find('.');
    const std::size_t behind = point == std::string::npos ? point : point + 1 + kSaltLength;
    if (behind >= name.size() || name[behind] != '.')
        return {};
    const std::string_view salt = std::string_view(name).substr(point + 1, kSaltLength);
    const bool isSalt = salt.find_first_not_of(kSaltCharacters) == std::string_view::npos;
    return isSalt ? name.substr(0, point) + name.substr(behind) : std::string();
}

bool BeginsWith(const std::string& name, const std::string& base) {
    return RuntimeStringCompare(Left(name, Len(base)), base) == 0;
}

bool IsNumbered(const std::string& name, const std::string& base) {
    return BeginsWith(name, base) && IsNumeric(Right(name, 3));
}

} // namespace

std::string PartName(const std::string& base, int32_t number) {
    return base + "." + Format(number, "000");
}

std::string BaseOfPart(const std::string& partName) {
    return Left(partName, Len(partName) - kEndingLength);
}

std::vector<std::string> DownloadNames(const std::string& partName) {
    std::vector<std::string> names;
    for (const char* const ending : {".download", ".crdownload", ".part", ".wkdownload", ".opdownload"})
        names.push_back(partName + ending);
    return names;
}

bool IsSaltedDownload(const std::string& entryName, const std::string& partName) {
    return entryName.size() == partName.size() + 1 + kSaltLength + kPartial.size() && entryName.ends_with(kPartial) &&
           WithoutSalt(entryName.substr(0, entryName.size() - kPartial.size())) == partName;
}

std::string ControlFileName(const std::string& partName) {
    return partName + ".aria2";
}

std::string NumberedVariant(const std::string& name, int32_t number) {
    const int32_t point = InStr(0, name, ".");
    const std::string head = Mid(name, 0, point);
    const std::string tail = Mid(name, point);
    return head + " " + Str(number) + tail;
}

int32_t PartCount(uint64_t length, int32_t partSize) {
    return RuntimeCvtReal64ToSInt32(Ceil(RuntimeCvtUInt64ToReal64(length) / double(partSize)));
}

bool BelongsToSeries(const std::string& entryName, const std::string& base) {
    if (entryName.ends_with(kPartial)) {
        const std::string part = entryName.substr(0, entryName.size() - kPartial.size());
        return IsNumbered(part, base) || IsNumbered(WithoutSalt(part), base);
    }
    return BeginsWith(entryName, base) &&
           (IsNumeric(Right(entryName, 3)) || RuntimeStringCompare(Right(entryName, 8), "download") == 0);
}
