#pragma once

#include "framework/base/Ref.h"

#include <string>

// A kind of file that the program knows. It counts from its first conversion to a string on.
//
// A file carries its four-character codes in the extended attributes user.NAME.type and user.NAME.creator, by the name
// of the program's command. "????" stands for no code. File systems without such attributes are no error.
class FileType : public Object {
public:
    std::string Name;
    std::string Extensions; // each with its point, joined by ";"
    std::string MacType;
    std::string MacCreator;

    // Registers the type with the framework, at the first call, and returns Name. Any thread.
    std::string Operator_Convert();

    // The registered type of that name, or nil.
    static Ref<FileType> Named(const std::string& name);
    // The registered type with that code (never one whose code is "????"), or nil.
    static Ref<FileType> WithCode(const std::string& macType);
    // The registered type that lists the last extension of that file name, without regard to case, or nil.
    static Ref<FileType> WithExtensionOf(const std::string& fileName);
};

// The code that stands for none.
inline constexpr const char* kNoFileCode = "????";
