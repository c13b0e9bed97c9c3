#pragma once

// The build-time variant. It decides which tagged lines of the language files count, and where dialog buttons stand:
// the action button left of the cancel button on Windows, right of it on the Mac.
#ifdef OMBRIVEL_VARIANT_WINDOWS
inline constexpr bool kWindowsVariant = true;
#else
inline constexpr bool kWindowsVariant = false;
#endif
