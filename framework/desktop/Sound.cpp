#include "framework/desktop/Sound.h"

#include <QAudioDevice>
#include <QAudioOutput>
#include <QFile>
#include <QMediaDevices>
#include <QMediaPlayer>
#include <QUrl>

#include <unistd.h>

struct Sound::Player {
    QAudioOutput output;
    QMediaPlayer player;
};

Ref<Sound> Sound::Load(const std::string& path) {
    return access(path.c_str(), R_OK) == 0 ? New<Sound>(path) : nullptr;
}

Sound::Sound(std::string path) : path_(std::move(path)) {}

Sound::~Sound() = default;

void Sound::Play() {
    if (!player_) {
        if (QMediaDevices::defaultAudioOutput().isNull())
            return;
        player_ = std::make_unique<Player>();
        player_->player.setAudioOutput(&player_->output);
        player_->player.setSource(QUrl::fromLocalFile(QFile::decodeName(path_.c_str())));
    }
    player_->player.stop();
    player_->player.play();
}
