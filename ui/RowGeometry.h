#pragma once

#include <cstdint>

// Where things lie in a row of the operation list, in pixels. scripts/demo reads these lines too.
namespace RowGeometry {

inline constexpr int32_t kRowHeight = 50;

// From the list's left edge, and from the row's top.
inline constexpr int32_t kIconLeft = 7;
inline constexpr int32_t kIconTop = 9;
inline constexpr int32_t kIconSize = 32;
inline constexpr int32_t kTextLeft = 45;
inline constexpr int32_t kNameBaseline = 15;
inline constexpr int32_t kStatusBaseline = 45;
inline constexpr int32_t kBarLeft = 45;
inline constexpr int32_t kBarTop = 20;

// From the right edge: where the bar ends and the stop button begins, with the button's top and the size of what takes
// a click on it.
inline constexpr int32_t kBarRightMargin = 36;
inline constexpr int32_t kStopFromRight = 30;
inline constexpr int32_t kStopTop = 19;
inline constexpr int32_t kStopSize = 15;

// The top of a row, from the list's.
constexpr int32_t TopOf(int32_t row) {
    return kRowHeight * row;
}

} // namespace RowGeometry
