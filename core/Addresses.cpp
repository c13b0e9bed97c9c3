#include "core/Addresses.h"

std::string VendorSite() {
    return OMBRIVEL_VENDOR_SITE;
}
