#include "core/Addresses.h"

std::string UpdateHost() {
    return OMBRIVEL_UPDATE_HOST;
}

std::string VendorSite() {
    return OMBRIVEL_VENDOR_SITE;
}
