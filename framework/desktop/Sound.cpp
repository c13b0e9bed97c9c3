#include "framework/desktop/Sound.h"

#include "framework/desktop/SoundPlayer.h"
#include "framework/files/ProgramFile.h"

#include <dlfcn.h>
#include <unistd.h>

namespace {

// Nil where the module or what it needs is not installed: the program is then silent.
PlaySoundFileFunction LoadPlayer() {
    void* const module = dlopen(PathBesideProgram(kSoundModule).c_str(), RTLD_NOW | RTLD_LOCAL);
    return module == nullptr ? nullptr : reinterpret_cast<PlaySoundFileFunction>(dlsym(module, kPlaySoundFile));
}

} // namespace

Ref<Sound> Sound::Load(const std::string& path) {
    return access(path.c_str(), R_OK) == 0 ? New<Sound>(path) : nullptr;
}

void Sound::Play() {
    static const PlaySoundFileFunction play = LoadPlayer();
    if (play != nullptr)
        play(path_.c_str());
}
