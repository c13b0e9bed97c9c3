#include "framework/text/Encoding.h"

#include <QByteArray>
#include <QCryptographicHash>

namespace {

// Does not copy.
QByteArray AsBytes(std::string_view text) {
    return QByteArray::fromRawData(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

std::string MD5(std::string_view bytes) {
    return QCryptographicHash::hash(AsBytes(bytes), QCryptographicHash::Md5).toStdString();
}

std::string EncodeBase64(std::string_view bytes, int32_t lineWrap) {
    const std::string encoded = AsBytes(bytes).toBase64().toStdString();
    if (lineWrap <= 0)
        return encoded;
    const auto width = static_cast<std::size_t>(lineWrap);
    std::string lines = encoded.substr(0, width);
    for (std::size_t at = width; at < encoded.size(); at += width)
        lines.append("\r\n").append(encoded, at, width);
    return lines;
}
