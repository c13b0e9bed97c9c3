#pragma once

class FolderItem;

// Has the desktop tell that a file could not be written as a whole, and why. The operation itself looks at no write
// error and ends like any other. `failure` is the number of the system's error; with 0 nothing is told. Any thread.
void TellNotWhole(const FolderItem& file, int failure, bool partsAreInTrash);
