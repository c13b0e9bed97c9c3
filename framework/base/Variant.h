#pragma once

#include <cstdint>
#include <string>
#include <variant>

// A value that says of itself what it is.
using Variant = std::variant<std::string, int32_t>;
