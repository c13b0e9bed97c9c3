#pragma once

#include "framework/base/Ref.h"

class Sound;

// The program's sounds. Each is read at its first use and kept; unlike a picture, one that failed is not tried again in
// this run and stays nil. Main thread.

Ref<Sound> sndResetPreferences();
Ref<Sound> sndNewVersion();
