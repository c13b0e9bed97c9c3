#pragma once

// Has the end of the desktop session ask the windows like any other quit. Once, at the start, on the main thread.
void AnswerEndOfSession();
