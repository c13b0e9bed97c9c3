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
