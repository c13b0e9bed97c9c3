#pragma once

// What the sound module offers. It is a library of its own, loaded when the first sound plays: the toolkit's multimedia
// part brings a good many libraries along, which a start without a sound need not wait for.

// Plays the file once, without waiting for its end; nothing where no audio device is. Main thread.
using PlaySoundFileFunction = void (*)(const char* path);
inline constexpr const char* kPlaySoundFile = "PlaySoundFile";
inline constexpr const char* kSoundModule = "../lib/ombrivel-sound.so"; // beside the program's folder
