#pragma once

#include "framework/app/Application.h"

// What the desktop gets to know of the program.
ProgramIdentity OmbrivelIdentity();

// Sets up what must stand before the first event: registers the file types and makes the application object.
Ref<Application> Startup();
