#pragma once

// The toolkit's side of Graphics and Picture. Included by the framework's sources only.

#include "framework/windows/Graphics.h"
#include "framework/windows/Picture.h"

#include <QIcon>
#include <QImage>
#include <QPainter>

#include <memory>
#include <vector>

struct Graphics::Native {
    // One painter for a window; one for each density of a picture that is drawn on.
    std::vector<QPainter*> painters;
    std::vector<std::unique_ptr<QPainter>> owned;
};

struct Picture::Native {
    QImage natural;
    QImage dense; // twice the size; null if there is none
    Ref<Picture> mask;

    // The picture with its mask applied, for a screen of that many device pixels per pixel. Kept until somebody asks
    // for the mask again, to draw on it.
    const QImage& Composed(double density) const;
    QIcon Icon() const;

    mutable QImage composedNatural;
    mutable QImage composedDense;
};

Graphics MakeGraphics(QPainter& painter);
