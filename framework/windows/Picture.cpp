#include "framework/windows/Picture.h"

#include "framework/windows/NativeGraphics.h"

#include <QGuiApplication>
#include <QPixmap>

#include <png.h>

namespace {

// "name.png" has its twin of twice the size in "name@2x.png".
std::string DenseTwin(const std::string& path) {
    const std::size_t point = path.rfind('.');
    return point == std::string::npos ? path + "@2x" : path.substr(0, point) + "@2x" + path.substr(point);
}

// Reads the file with the library itself: the toolkit would load its plug-ins for every other format first.
QImage ReadImage(const std::string& path) {
    png_image header{};
    header.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_file(&header, path.c_str()) == 0)
        return {};
    header.format = PNG_FORMAT_RGBA;
    QImage image(static_cast<int>(header.width), static_cast<int>(header.height), QImage::Format_RGBA8888);
    const bool read =
        !image.isNull() && png_image_finish_read(&header, nullptr, image.bits(),
                                                 static_cast<png_int_32>(image.bytesPerLine()), nullptr) != 0;
    png_image_free(&header);
    return read ? image.convertToFormat(QImage::Format_ARGB32_Premultiplied) : QImage();
}

// The twin is worth its reading only if some screen shows it.
bool ScreensAreDense() {
    return qApp->devicePixelRatio() > 1;
}

QImage WithMask(const QImage& picture, const QImage& mask) {
    if (picture.isNull() || mask.isNull())
        return picture;
    QImage result = picture.convertToFormat(QImage::Format_ARGB32);
    const QImage grey = mask.convertToFormat(QImage::Format_Grayscale8);
    for (int y = 0; y < result.height(); ++y) {
        auto* const pixels = reinterpret_cast<QRgb*>(result.scanLine(y));
        for (int x = 0; x < result.width(); ++x) {
            const int hidden = grey.valid(x, y) ? grey.constScanLine(y)[x] : 0;
            pixels[x] = qRgba(qRed(pixels[x]), qGreen(pixels[x]), qBlue(pixels[x]), 255 - hidden);
        }
    }
    return result.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

std::unique_ptr<QPainter> PainterOn(QImage& image, double scale) {
    auto painter = std::make_unique<QPainter>(&image);
    painter->scale(scale, scale);
    return painter;
}

} // namespace

Picture::Picture(std::unique_ptr<Native> native) : native_(std::move(native)) {}

Picture::~Picture() = default;

Ref<Picture> Picture::Load(const std::string& path) {
    auto native = std::make_unique<Native>();
    native->natural = ReadImage(path);
    if (native->natural.isNull())
        return nullptr;
    if (ScreensAreDense())
        native->dense = ReadImage(DenseTwin(path));
    if (native->dense.size() != native->natural.size() * 2)
        native->dense = {};
    return New<Picture>(std::move(native));
}

int32_t Picture::Width() const {
    return native_->natural.width();
}

int32_t Picture::Height() const {
    return native_->natural.height();
}

Ref<Picture> Picture::Mask(bool create) {
    native_->composedNatural = {};
    native_->composedDense = {};
    if (native_->mask.IsNil() && create) {
        auto mask = std::make_unique<Native>();
        for (const auto& [from, to] : {std::pair(&native_->natural, &mask->natural), {&native_->dense, &mask->dense}}) {
            *to = QImage(from->size(), QImage::Format_ARGB32_Premultiplied);
            to->fill(Qt::black);
        }
        native_->mask = New<Picture>(std::move(mask));
    }
    return native_->mask;
}

Graphics Picture::Graphics() {
    auto native = std::make_unique<::Graphics::Native>();
    native->owned.push_back(PainterOn(native_->natural, 1));
    if (!native_->dense.isNull())
        native->owned.push_back(PainterOn(native_->dense, 2));
    for (const auto& painter : native->owned)
        native->painters.push_back(painter.get());
    return ::Graphics(std::move(native));
}

const QImage& Picture::Native::Composed(double density) const {
    const bool pickDense = density > 1 && !dense.isNull();
    const QImage& image = pickDense ? dense : natural;
    if (mask.IsNil())
        return image;
    QImage& composed = pickDense ? composedDense : composedNatural;
    if (composed.isNull())
        composed = WithMask(image, pickDense ? mask->ForFramework().dense : mask->ForFramework().natural);
    return composed;
}

QIcon Picture::Native::Icon() const {
    QIcon icon(QPixmap::fromImage(Composed(1)));
    if (!dense.isNull()) {
        QPixmap pixmap = QPixmap::fromImage(Composed(2));
        pixmap.setDevicePixelRatio(2);
        icon.addPixmap(pixmap);
    }
    return icon;
}
