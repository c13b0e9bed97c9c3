// Plays a sound file: a process of its own, as Qt's multimedia part and its decoders may take seconds to load.

#include <QAudioDevice>
#include <QAudioOutput>
#include <QCoreApplication>
#include <QFile>
#include <QMediaDevices>
#include <QMediaPlayer>
#include <QTimer>
#include <QUrl>

#include <chrono>

namespace {

constexpr std::chrono::seconds kLongestSound{60}; // a broken decoder shall not leave a process behind

} // namespace

int main(int count, char** words) {
    if (count != 2)
        return 2;
    const QCoreApplication application(count, words);
    if (QMediaDevices::defaultAudioOutput().isNull())
        return 1;
    QAudioOutput output;
    QMediaPlayer player;
    player.setAudioOutput(&output);
    QObject::connect(&player, &QMediaPlayer::playbackStateChanged, &player, [](QMediaPlayer::PlaybackState state) {
        if (state == QMediaPlayer::StoppedState)
            QCoreApplication::quit();
    });
    QObject::connect(&player, &QMediaPlayer::errorOccurred, &player, [] { QCoreApplication::exit(1); });
    QTimer::singleShot(kLongestSound, &player, [] { QCoreApplication::exit(1); });
    player.setSource(QUrl::fromLocalFile(QFile::decodeName(words[1])));
    player.play();
    return QCoreApplication::exec();
}
