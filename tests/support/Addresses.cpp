// In place of the program's own: the tests say where the update server is.

#include "core/Addresses.h"

#include <cstdlib>

std::string UpdateHost() {
    const char* const host = std::getenv("OMBRIVEL_TEST_UPDATE_HOST");
    return host == nullptr ? "127.0.0.1:1" : host; // where nobody listens
}

std::string VendorSite() {
    return OMBRIVEL_VENDOR_SITE;
}
