#include "engine/PartNames.h"

#include "framework/text/Number.h"
#include "framework/text/Text.h"

namespace {

constexpr int32_t kEndingLength = 4; // point and three digits

} // namespace

std::string PartName(const std::string& base, int32_t number) {
    return base + "." + Format(number, "000");
}

std::string BaseOfPart(const std::string& partName) {
    return Left(partName, Len(partName) - kEndingLength);
}

std::vector<std::string> DownloadNames(const std::string& partName) {
    return {partName + ".download", partName + ".crdownload"};
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
    if (RuntimeStringCompare(Left(entryName, Len(base)), base) != 0)
        return false;
    return IsNumeric(Right(entryName, 3)) || RuntimeStringCompare(Right(entryName, 8), "download") == 0;
}
