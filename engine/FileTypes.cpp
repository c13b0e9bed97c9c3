#include "engine/FileTypes.h"

#include "framework/base/Immortal.h"
#include "framework/text/Number.h"

#include <string>

namespace {

// The list ends here on purpose: it only tells the desktop which names count as parts at a glance. Higher numbers are
// recognised by their type code.
constexpr int kLastListedPart = 50;

std::string PartExtensions() {
    std::string extensions;
    for (int number = 0; number <= kLastListedPart; ++number)
        extensions += (number == 0 ? "." : ";.") + Format(number, "000");
    return extensions;
}

const Immortal<Ref<FileType>> unknown;
const Immortal<Ref<FileType>> ombrivelPart;

Ref<FileType> Register(const std::string& name, const std::string& extensions, const std::string& macType,
                       const std::string& macCreator) {
    const auto type = New<FileType>();
    type->Name = name;
    type->Extensions = extensions;
    type->MacType = macType;
    type->MacCreator = macCreator;
    type->Operator_Convert(); // the first conversion is what registers it
    return type;
}

} // namespace

void InitFileTypes() {
    *unknown = Register("Unknown", "", "????", "????");
    *ombrivelPart = Register("Ombrivel Part", PartExtensions(), "OVPT", "OMBV");
}

const Ref<FileType>& FileTypes::Unknown() {
    return *unknown;
}

const Ref<FileType>& FileTypes::OmbrivelPart() {
    return *ombrivelPart;
}
