#include "core/Startup.h"

#include "core/App.h"
#include "engine/FileTypes.h"

ProgramIdentity OmbrivelIdentity() {
    return {"Ombrivel", "example.halvrick.Ombrivel", OMBRIVEL_LONG_VERSION, OMBRIVEL_SHORT_VERSION};
}

Ref<Application> Startup() {
    FileTypes::Initialize();
    const Ref<App> app = App::NewAppInstance();
    app->AddMenuHandlers();
    return app;
}
