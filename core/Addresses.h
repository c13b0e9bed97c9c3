#pragma once

#include <string>

// The addresses that the program goes to. All are build options, with defaults that lead nowhere.

// The host of the update server, with a port if it is not 80: "host" or "host:port".
std::string UpdateHost();

// The vendor's web site.
std::string VendorSite();
