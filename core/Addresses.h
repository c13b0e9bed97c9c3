#pragma once

#include <string>

// The addresses that the program goes to. All are build options, with defaults that lead nowhere.

// The vendor's web site.
std::string VendorSite();
