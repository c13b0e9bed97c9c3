#include "framework/desktop/Sound.h"

#include "framework/desktop/Helper.h"

#include <unistd.h>

Ref<Sound> Sound::Load(const std::string& path) {
    return access(path.c_str(), R_OK) == 0 ? New<Sound>(path) : nullptr;
}

void Sound::Play() {
    RunHelper("sound", {path_});
}
