#pragma once

#include "framework/app/Application.h"

// The application object of this process, nil before it is made. Main thread.
Ref<Application> RunningApplication();

// Runs the application's Close event and ends the process. Main thread; Qt may have gone.
[[noreturn]] void SaveAndEnd(int exitCode);
