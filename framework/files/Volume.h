#pragma once

#include <string>

// What users call the volume on which an absolute path lies: the name of the folder where it is mounted, "/" for the
// system's own. Any thread.
std::string VolumeName(const std::string& path);
