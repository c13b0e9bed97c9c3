#pragma once

#include <cstdint>
#include <string>

// Cuts and glues with the program's own workers and list, without the dialog. To be called from the thread that takes
// the measurements; each returns when its worker has ended.
void Cut(const std::string& file, int32_t partSize);
void Glue(const std::string& part);

// Starts one and returns at once.
void BeginCut(const std::string& file, int32_t partSize);
