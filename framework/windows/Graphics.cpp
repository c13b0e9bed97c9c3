#include "framework/windows/NativeGraphics.h"

#include "framework/windows/Native.h"

#include <QApplication>
#include <QFont>
#include <QFontMetrics>

#include <algorithm>
#include <cmath>

namespace {

int32_t OrNatural(int32_t size, int32_t natural) {
    return size == kNaturalSize ? natural : size;
}

// Whether a line of that font on that baseline lies wholly above or below what is to be painted. Setting text is what
// painting costs most, and a bar's step has the rows beneath it painted along, where no text stands.
bool MissesLine(const QPainter& painter, const QFontMetrics& font, int32_t baseline) {
    const QRegion wanted = painter.clipRegion();
    return painter.hasClipping() && std::none_of(wanted.begin(), wanted.end(), [&](const QRect& area) {
               return area.top() <= baseline + font.descent() && baseline - font.ascent() <= area.bottom();
           });
}

// Device pixels per pixel.
double DensityOf(const QPainter& painter) {
    return painter.device()->devicePixelRatio() * painter.worldTransform().m11();
}

} // namespace

Graphics MakeGraphics(QPainter& painter) {
    auto native = std::make_unique<Graphics::Native>();
    native->painters.push_back(&painter);
    return Graphics(std::move(native));
}

Graphics::Graphics(std::unique_ptr<Native> native) : native_(std::move(native)) {}

Graphics::Graphics(Graphics&&) noexcept = default;

Graphics::~Graphics() = default;

void Graphics::FillRect(int32_t x, int32_t y, int32_t width, int32_t height) {
    for (QPainter* painter : native_->painters)
        painter->fillRect(x, y, width, height, QColor(QRgb(ForeColor)));
}

void Graphics::DrawString(const std::string& text, int32_t x, int32_t baseline, int32_t /*wrapWidth*/,
                          bool /*condense*/) {
    QFont font = QApplication::font();
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(TextSize))));
    const QFontMetrics metrics(font);
    for (QPainter* painter : native_->painters) {
        if (MissesLine(*painter, metrics, baseline))
            continue;
        painter->setFont(font);
        painter->setPen(QColor(QRgb(ForeColor)));
        painter->drawText(QPoint(x, baseline), ToScreen(text));
    }
}

void Graphics::DrawPicture(const Ref<Picture>& picture, int32_t x, int32_t y, int32_t width, int32_t height,
                           int32_t sourceX, int32_t sourceY, int32_t sourceWidth, int32_t sourceHeight) {
    const QRect source(sourceX, sourceY, OrNatural(sourceWidth, picture->Width()),
                       OrNatural(sourceHeight, picture->Height()));
    const QRect target(x, y, OrNatural(width, source.width()), OrNatural(height, source.height()));
    for (QPainter* painter : native_->painters) {
        const QImage& image = picture->ForFramework().Composed(DensityOf(*painter));
        const double scale = double(image.width()) / std::max(1, picture->Width());
        const QRectF pixels(source.x() * scale, source.y() * scale, source.width() * scale, source.height() * scale);
        painter->setRenderHint(QPainter::SmoothPixmapTransform);
        painter->drawImage(QRectF(target), image, pixels);
    }
}
