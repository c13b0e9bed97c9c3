#pragma once

#include "framework/windows/Picture.h"

// The program's pictures, each with its mask applied. A picture is read from the resources at its first use and kept;
// one that can't be read is nil, and is tried again at the next use. Main thread. Callers change nothing on them.

Ref<Picture> picBack();
Ref<Picture> picIconGlue();
Ref<Picture> picIconCut();
Ref<Picture> picIconUrl();
Ref<Picture> picStop();
Ref<Picture> picStopActive();
Ref<Picture> IconPicture();

// Their masks.
Ref<Picture> picIconGlueMask();
Ref<Picture> picIconCutMask();
Ref<Picture> picIconUrlMask();
Ref<Picture> picStopMask();
Ref<Picture> picStopActiveMask();
Ref<Picture> IconMask();
