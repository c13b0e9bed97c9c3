#pragma once

// Qt's side of Graphics and Picture. Included by the framework's sources only.

#include "framework/windows/Graphics.h"
#include "framework/windows/Picture.h"

#include <QIcon>
#include <QImage>
#include <QPainter>

#include <functional>
#include <utility>
#include <vector>

using DrawingStep = std::function<void(QPainter&)>;

// Draws on a window at once, or notes the steps of a drawing on a picture.
struct NativeGraphics {
    QPainter* painter = nullptr;
    std::vector<DrawingStep>* steps = nullptr;

    template <class Step>
    void Draw(Step step) const {
        if (painter != nullptr)
            step(*painter);
        else
            steps->push_back(std::move(step));
    }
};

struct NativePicture {
    QImage natural;
    std::function<QImage()> readDense; // gives it at twice the size, or null
    std::vector<DrawingStep> drawn;    // onto the picture
    Ref<Picture> mask;

    // The picture, with what is drawn on it and its mask applied, for a screen of that many device pixels per pixel.
    // Made at the first need, and kept until somebody asks for the picture or its mask again, to draw on it.
    const QImage& Composed(double density) const;
    void Forget() const;

private:
    bool HasDense() const;
    QImage Compose(QImage image, double scale) const;

    mutable QImage dense_;
    mutable bool denseIsRead_ = false;
    mutable QImage composedNatural_, composedDense_;
};

Graphics MakeGraphics(QPainter& painter);

// For Qt's own places for icons.
QIcon IconOf(const Ref<Picture>& picture);
