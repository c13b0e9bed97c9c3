#pragma once

// What a screen reader meets of the windows, where it is not what Qt's widgets show by themselves. Included by the
// framework's sources only. Main thread.

class Canvas;
class QWidget;

// A widget that paints a canvas.
class CanvasPainter {
public:
    virtual Canvas& PaintedCanvas() = 0;

protected:
    ~CanvasPainter() = default;
};

// A text that is pressed like a button.
class LinkText {
public:
    virtual void Press() = 0;

protected:
    ~LinkText() = default;
};

// To be called once, before the first window is made. From then on a list that a canvas paints is a list of rows, and a
// canvas without rows, a control that is hidden and one that lies out of sight are not there.
void DescribeToScreenReaders();

// Tells a screen reader, if there is one, what has changed in the canvas's rows.
void AnnounceRows(QWidget& canvas);
