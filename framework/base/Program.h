#pragma once

#include <string>

// What the desktop and the framework need to know of a program.
struct ProgramIdentity {
    std::string Name;     // as users read it
    std::string FileName; // of its command; its helpers and the attributes of its files have it in front
    std::string Id;       // reverse domain name: its name on the session bus and of its launcher
    std::string LongVersion;
    std::string ShortVersion;
};

// This program's. Set once, before any thread begins; read by any thread.
const ProgramIdentity& ThisProgram();
void SetThisProgram(const ProgramIdentity& identity);

// Absolute path of the running program's file, and of a file that stands at `relative` to its folder. Empty if the
// system does not tell. Any thread.
std::string ProgramFilePath();
std::string PathBesideProgram(const std::string& relative);

// The build-time variant. It decides which tagged lines of the language files count, and where dialog buttons stand:
// the action button left of the cancel button on Windows, right of it on the Mac.
#ifdef OMBRIVEL_VARIANT_WINDOWS
inline constexpr bool kWindowsVariant = true;
#else
inline constexpr bool kWindowsVariant = false;
#endif
