#include "framework/windows/Picture.h"

#include "framework/windows/NativeGraphics.h"

#include <QApplication>
#include <QIconEngine>
#include <QPixmap>
#include <QStyle>
#include <QStyleOption>

#include <png.h>

#include <utility>

namespace {

// "name.png" has its twin of twice the size in "name@2x.png".
std::string DenseTwin(const std::string& path) {
    const std::size_t point = path.rfind('.');
    return point == std::string::npos ? path + "@2x" : path.substr(0, point) + "@2x" + path.substr(point);
}

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

QImage Black(QSize size) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::black);
    return image;
}

// The mask takes the place of whatever transparency the picture has: Qt would multiply them.
QImage WithMask(const QImage& picture, const QImage& mask) {
    if (picture.isNull() || mask.isNull())
        return picture;
    QImage shown = mask.convertToFormat(QImage::Format_Grayscale8);
    shown.invertPixels();
    QImage result = picture.convertToFormat(QImage::Format_RGB32);
    result.setAlphaChannel(shown);
    return result;
}

// Gives Qt just the pixels of the screen at hand: its own icons scale an image to about their size and leave the rest
// to the paint.
class PictureIcon : public QIconEngine {
public:
    explicit PictureIcon(Ref<Picture> picture) : picture_(std::move(picture)) {}

    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State /*state*/, qreal density) override {
        const QImage& image = picture_->Native().Composed(density);
        const QPixmap pixmap = QPixmap::fromImage(image.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation));
        QStyleOption option;
        option.palette = QGuiApplication::palette();
        return mode == QIcon::Normal ? pixmap : QApplication::style()->generatedIconPixmap(mode, pixmap, &option);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        return scaledPixmap(size, mode, state, 1);
    }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
        const double density = painter->device()->devicePixelRatio();
        painter->drawPixmap(rect, scaledPixmap(rect.size() * density, mode, state, density));
    }

    QSize actualSize(const QSize& size, QIcon::Mode /*mode*/, QIcon::State /*state*/) override {
        return QSize(picture_->Width(), picture_->Height()).scaled(size, Qt::KeepAspectRatio);
    }

    QList<QSize> availableSizes(QIcon::Mode /*mode*/, QIcon::State /*state*/) override {
        return {QSize(picture_->Width(), picture_->Height())};
    }

    QIconEngine* clone() const override { return new PictureIcon(picture_); }

private:
    Ref<Picture> picture_;
};

} // namespace

Picture::Picture(std::unique_ptr<NativePicture> native) : native_(std::move(native)) {}

Picture::~Picture() = default;

Ref<Picture> Picture::Load(const std::string& path) {
    auto native = std::make_unique<NativePicture>();
    native->natural = ReadImage(path);
    if (native->natural.isNull())
        return nullptr;
    native->readDense = [path] { return ReadImage(DenseTwin(path)); };
    return New<Picture>(std::move(native));
}

int32_t Picture::Width() const {
    return native_->natural.width();
}

int32_t Picture::Height() const {
    return native_->natural.height();
}

Ref<Picture> Picture::Mask(bool create) {
    native_->Forget();
    if (native_->mask.IsNil() && create) {
        auto mask = std::make_unique<NativePicture>();
        const QSize size = native_->natural.size();
        mask->natural = Black(size);
        mask->readDense = [size] { return Black(size * 2); };
        native_->mask = New<Picture>(std::move(mask));
    }
    return native_->mask;
}

Graphics Picture::Graphics() {
    native_->Forget();
    auto native = std::make_unique<NativeGraphics>();
    native->steps = &native_->drawn;
    return ::Graphics(std::move(native));
}

void NativePicture::Forget() const {
    composedNatural_ = {};
    composedDense_ = {};
}

bool NativePicture::HasDense() const {
    if (!std::exchange(denseIsRead_, true)) {
        dense_ = readDense();
        if (dense_.size() != natural.size() * 2)
            dense_ = {};
    }
    return !dense_.isNull();
}

QImage NativePicture::Compose(QImage image, double scale) const {
    if (!drawn.empty()) {
        QPainter painter(&image);
        painter.scale(scale, scale);
        for (const DrawingStep& step : drawn)
            step(painter);
    }
    return mask.IsNil() ? image : WithMask(image, mask->Native().Composed(scale));
}

const QImage& NativePicture::Composed(double density) const {
    const bool pickDense = density > 1 && HasDense();
    QImage& composed = pickDense ? composedDense_ : composedNatural_;
    if (composed.isNull())
        composed = Compose(pickDense ? dense_ : natural, pickDense ? 2 : 1);
    return composed;
}

QIcon IconOf(const Ref<Picture>& picture) {
    return QIcon(new PictureIcon(picture)); // which owns it
}
