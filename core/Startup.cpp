#include "core/Startup.h"

#include "core/App.h"
#include "engine/FileTypes.h"

ProgramIdentity OmbrivelIdentity() {
    return {"Ombrivel", "ombrivel", "example.halvrick.Ombrivel", OMBRIVEL_LONG_VERSION, OMBRIVEL_SHORT_VERSION};
}

Ref<Application> Startup() {
    InitFileTypes();
    const Ref<App> app = App::NewAppInstance();
    app->ApplicationAddMenuHandlers();
    return app;
}
