#pragma once

#include "framework/base/Ref.h"

#include <string>

// A sound file, WAV or MP3. Main thread.
class Sound : public Object {
public:
    // Nil if there is no such file.
    static Ref<Sound> Load(const std::string& path);

    explicit Sound(std::string path) : path_(std::move(path)) {}

    // Plays the sound once and returns at once. Where no audio device or no decoder is, nothing is heard.
    void Play();

private:
    std::string path_;
};
