#pragma once

#include "framework/base/Ref.h"

#include <cstdint>
#include <memory>
#include <string>

class Picture;
struct NativeGraphics; // Qt's side, known to the framework's sources only

// Stands for the natural size where a size is asked for.
inline constexpr int32_t kNaturalSize = -10000;

// What a paint event, or the drawing on a picture, draws with. Coordinates are pixels of the canvas, whatever the
// density of the screen. It is valid during the event only. Main thread.
class Graphics {
public:
    explicit Graphics(std::unique_ptr<NativeGraphics> native);
    Graphics(Graphics&&) noexcept;
    ~Graphics();

    float TextSize = 12;           // pixels
    uint32_t ForeColor = 0x000000; // of later fills and text, RGB

    void FillRect(int32_t x, int32_t y, int32_t width, int32_t height);

    // Draws on one line from x, on the baseline y. The program wraps and condenses nowhere, so both take only their
    // neutral values, 0 and false.
    void DrawString(const std::string& text, int32_t x, int32_t baseline, int32_t wrapWidth, bool condense);

    // Draws the source rectangle of a picture into the given one.
    void DrawPicture(const Ref<Picture>& picture, int32_t x, int32_t y, int32_t width = kNaturalSize,
                     int32_t height = kNaturalSize, int32_t sourceX = 0, int32_t sourceY = 0,
                     int32_t sourceWidth = kNaturalSize, int32_t sourceHeight = kNaturalSize);

private:
    std::unique_ptr<NativeGraphics> native_;
};
