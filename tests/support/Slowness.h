#pragma once

// How many times longer a test's own work may take, or less of it there should be: a sanitizer slows it tenfold, and
// loops over single bytes a hundredfold.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kSanitized = true;
#else
constexpr bool kSanitized = false;
#endif
constexpr int kSlowness = kSanitized ? 20 : 1;
