#pragma once

#include "framework/base/Ref.h"

#include <cstdint>
#include <memory>
#include <string>

class Graphics;
struct NativePicture; // Qt's side, known to the framework's sources only

// A picture with an optional mask, kept at its natural size and, if its file has a twin named "...@2x..." and a dense
// screen has shown it, at twice that size. Main thread.
class Picture : public Object {
public:
    explicit Picture(std::unique_ptr<NativePicture> native);
    ~Picture() override;

    // Reads a PNG file, and its twin once it is needed; nil when the file can't be read. Not by Qt, which loads its
    // plug-ins for all other formats first: 1.1 ms for eleven of the program's small pictures, in place of 0.3.
    static Ref<Picture> Load(const std::string& path);

    int32_t Width() const;
    int32_t Height() const;

    // The mask: black shows the picture, white hides it, greys are in between. With `create`, a picture without a mask
    // gets one that shows everything.
    Ref<Picture> Mask(bool create);

    // Draws on the picture itself, which has to outlive the result.
    ::Graphics Graphics();

    const NativePicture& Native() const { return *native_; }

private:
    std::unique_ptr<NativePicture> native_;
};
