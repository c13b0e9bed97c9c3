#include "framework/windows/Native.h"

#include "framework/text/Text.h"
#include "framework/text/Utf8.h"

#include <QApplication>
#include <QFont>

#include <algorithm>

namespace {

// Controls are laid out in pixels, so their texts are too; the desktop's choice of family stays.
constexpr int kSystemPixels = 13;
constexpr int kSmallSystemPixels = 11;

// Measuring a text of many megabytes takes Qt minutes, and no screen shows it.
constexpr std::size_t kMostBytes = std::size_t(64) * 1024;

} // namespace

QString ToScreen(std::string_view text) {
    const std::string shown = Displayable(Utf8Beginning(text, kMostBytes));
    return QString::fromUtf8(shown.data(), static_cast<qsizetype>(shown.size()));
}

QString ToParagraphs(const std::string& text) {
    QStringList lines;
    const std::string_view shown = Utf8Beginning(text, kMostBytes);
    for (std::size_t from = 0; from <= shown.size();) {
        const std::size_t end = std::min(shown.find('\n', from), shown.size());
        lines << ToScreen(shown.substr(from, end - from));
        from = end + 1;
    }
    return lines.join(QLatin1Char('\n'));
}

QString ToCaption(std::string_view text) {
    return ToScreen(text).replace(QLatin1Char('&'), QLatin1String("&&"));
}

std::string FromScreen(const QString& text) {
    return text.toStdString();
}

void DeleteLater(QWidget& widget, const Ref<Object>& owner) {
    QObject::connect(&widget, &QObject::destroyed, &widget, [owner] {}); // goes with the widget
    widget.deleteLater();
}

QFont SystemFont(bool small, bool bold) {
    QFont font = QApplication::font();
    font.setPixelSize(small ? kSmallSystemPixels : kSystemPixels);
    font.setBold(bold);
    return font;
}
