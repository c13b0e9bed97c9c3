#pragma once

#include "framework/base/Ref.h"

#include <memory>
#include <string>

// A sound file, WAV or MP3. Main thread.
class Sound : public Object {
public:
    // Nil if there is no such file.
    static Ref<Sound> Load(const std::string& path);

    explicit Sound(std::string path);
    ~Sound() override;

    // Plays the sound once, without waiting for its end. Where no audio device is, nothing is heard.
    void Play();

private:
    struct Player;
    std::string path_;
    std::unique_ptr<Player> player_; // made when the sound is played first
};
