#pragma once

// The end of the desktop session asks like any other quit. Main thread.

// Has the windows asked when the session wants to end. Once, at the start.
void AnswerEndOfSession();

// The windows have agreed: what the session closes from now on closes without a further question.
bool EndOfSessionIsAgreed();

// Ends the process as a quit that nobody refused.
[[noreturn]] void EndWithSession();
