#pragma once

#include "framework/base/Ref.h"

#include <cstdint>
#include <string>

class FolderItem;

// Asks for a part size in the cut dialog and starts the worker of the cut; nothing happens if the user cancels. The
// parts land beside the source; one that lies in no folder is refused with a beep. Main thread; returns when the dialog
// is over and the worker runs. A file that comes in the middle of that, or while another modal dialog is up, waits for
// its turn, and this returns at once.
//
// No series in use is looked at or entered: one file may be cut several times at once, and also while it is being
// glued.
void StartCut(const Ref<FolderItem>& file);

// Logs to standard error which files still wait for their turn, at the end of the program. Main thread.
void LogWaitingCuts();

// A base name under which no part with a number up to `count` exists in the folder, and that no other cut is about to
// use: the given one, or a numbered variant of it. Each variant is made from the one before, so numbers pile up:
// "film.mov", "film 1.mov", "film 1 2.mov". Kept on purpose, see docs/reading.md.
std::string FreeBaseName(const FolderItem& folder, std::string name, int32_t count);
