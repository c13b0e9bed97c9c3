#pragma once

#include "framework/base/Ref.h"

#include <cstdint>
#include <random>

// A source of chance, different in every run. Used by one thread at a time.
class Random : public Object {
public:
    // One of the numbers from `lowest` to `highest`, both included, each as likely as the others.
    int32_t InRange(int32_t lowest, int32_t highest) {
        return std::uniform_int_distribution<int32_t>(lowest, highest)(engine_);
    }

private:
    std::random_device engine_;
};
