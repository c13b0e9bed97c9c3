#include "framework/desktop/SoundPlayer.h"

#include <QAudioDevice>
#include <QAudioOutput>
#include <QFile>
#include <QMediaDevices>
#include <QMediaPlayer>
#include <QUrl>

extern "C" __attribute__((visibility("default"))) void PlaySoundFile(const char* path) {
    if (QMediaDevices::defaultAudioOutput().isNull())
        return;
    auto* const player = new QMediaPlayer; // goes when it has come to the end
    auto* const output = new QAudioOutput(player);
    player->setAudioOutput(output);
    QObject::connect(player, &QMediaPlayer::playbackStateChanged, player, [player](QMediaPlayer::PlaybackState state) {
        if (state == QMediaPlayer::StoppedState)
            player->deleteLater();
    });
    QObject::connect(player, &QMediaPlayer::errorOccurred, player, &QObject::deleteLater);
    player->setSource(QUrl::fromLocalFile(QFile::decodeName(path)));
    player->play();
}
