#pragma once

// Makes keys that are held down repeat in text fields, lists and menus only, and there only in the one that they were
// pressed in: what repeats answers no dialog, presses no button or link and fires no shortcut. For the whole program,
// once, after Qt's application is there.
void IgnoreHeldKeys();
