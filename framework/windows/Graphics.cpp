#include "framework/windows/NativeGraphics.h"

#include "framework/base/Immortal.h"
#include "framework/windows/Native.h"

#include <QApplication>
#include <QCache>
#include <QFont>
#include <QGlyphRun>
#include <QRawFont>
#include <QTextLayout>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

int32_t OrNatural(int32_t size, int32_t natural) {
    return size == kNaturalSize ? natural : size;
}

// The rows that the glyphs of a text touch, from its baseline. Those of other scripts, and marks that are stacked,
// reach beyond the ascent and the descent of the font, and QFontMetrics does not know where stacked ones come to lie.
QRect MeasuredInk(const QString& text, const QFont& font) {
    QTextLayout layout(text, font);
    layout.beginLayout();
    const QTextLine line = layout.createLine();
    layout.endLayout();
    QRectF ink;
    for (const QGlyphRun& run : layout.glyphRuns()) {
        const QList<quint32> glyphs = run.glyphIndexes();
        const QList<QPointF> positions = run.positions();
        const QRawFont rawFont = run.rawFont();
        for (qsizetype i = 0; i < glyphs.size(); ++i)
            ink |= rawFont.boundingRect(glyphs[i]).translated(positions[i]);
    }
    // One row more on each side: what is drawn is rounded, and on a denser screen otherwise.
    return ink.translated(0, -line.ascent()).toAlignedRect().adjusted(0, -1, 0, 1);
}

// Measuring costs as much as drawing, and the same few texts come again and again.
QRect InkOf(const QString& text, const QFont& font) {
    static const Immortal<QCache<std::pair<QFont, QString>, QRect>> known(200);
    if (const QRect* const ink = known->object({font, text}))
        return *ink;
    const QRect ink = MeasuredInk(text, font);
    known->insert({font, text}, new QRect(ink));
    return ink;
}

// Whether such a text on that baseline lies wholly above or below what is to be painted. Setting text is what painting
// costs most, and a bar's step has the rows beneath it painted along, where no text stands.
bool Misses(const QPainter& painter, const QRect& ink, int32_t baseline) {
    const QRegion wanted = painter.clipRegion();
    return painter.hasClipping() && std::none_of(wanted.begin(), wanted.end(), [&](const QRect& area) {
               return area.top() <= baseline + ink.bottom() && baseline + ink.top() <= area.bottom();
           });
}

// Device pixels per pixel.
double DensityOf(const QPainter& painter) {
    return painter.device()->devicePixelRatio() * painter.worldTransform().m11();
}

} // namespace

Graphics MakeGraphics(QPainter& painter) {
    auto native = std::make_unique<NativeGraphics>();
    native->painter = &painter;
    return Graphics(std::move(native));
}

Graphics::Graphics(std::unique_ptr<NativeGraphics> native) : native_(std::move(native)) {}

Graphics::Graphics(Graphics&&) noexcept = default;

Graphics::~Graphics() = default;

void Graphics::FillRect(int32_t x, int32_t y, int32_t width, int32_t height) {
    native_->Draw(
        [=, color = QColor(QRgb(ForeColor))](QPainter& painter) { painter.fillRect(x, y, width, height, color); });
}

void Graphics::DrawString(const std::string& text, int32_t x, int32_t baseline, int32_t /*wrapWidth*/,
                          bool /*condense*/) {
    QFont font = QApplication::font();
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(TextSize))));
    const QString shown = ToScreen(text);
    native_->Draw([=, ink = InkOf(shown, font), color = QColor(QRgb(ForeColor))](QPainter& painter) {
        if (Misses(painter, ink, baseline))
            return;
        painter.setFont(font);
        painter.setPen(color);
        painter.drawText(QPoint(x, baseline), shown);
    });
}

void Graphics::DrawPicture(const Ref<Picture>& picture, int32_t x, int32_t y, int32_t width, int32_t height,
                           int32_t sourceX, int32_t sourceY, int32_t sourceWidth, int32_t sourceHeight) {
    const QRect source(sourceX, sourceY, OrNatural(sourceWidth, picture->Width()),
                       OrNatural(sourceHeight, picture->Height()));
    const QRect target(x, y, OrNatural(width, source.width()), OrNatural(height, source.height()));
    native_->Draw([=](QPainter& painter) {
        const QImage& image = picture->Native().Composed(DensityOf(painter));
        const double scale = double(image.width()) / std::max(1, picture->Width());
        const QRectF pixels(source.x() * scale, source.y() * scale, source.width() * scale, source.height() * scale);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(QRectF(target), image, pixels);
    });
}
