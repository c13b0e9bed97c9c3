#include "core/App.h"

int main(int argumentCount, char** arguments) {
    return RunApplication(argumentCount, arguments, OmbrivelIdentity(), Startup);
}
