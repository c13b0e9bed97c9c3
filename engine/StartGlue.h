#pragma once

#include "framework/base/Ref.h"

#include <vector>

class FolderItem;

// Starts the worker of a glue, given any part of a series, and enters the series into `inUse`. A series that is in
// there already is turned away in silence. Main thread.
//
// The test is by prefix and so wider than one series: while film.mov is being glued, a part of film.mov2 in the same
// folder is turned away too. That is accepted.
void StartGlue(const Ref<FolderItem>& file, std::vector<Ref<FolderItem>>& inUse);
