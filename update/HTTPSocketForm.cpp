#include "update/HTTPSocket.h"

#include "framework/text/Number.h"
#include "framework/text/Text.h"
#include "framework/threads/Yield.h"

#include <string_view>

void HTTPSocket::SetPostContent(const std::string& content, const std::string& type) {
    _postContent = content;
    _postContentType = type;
}

void HTTPSocket::SetFormData(const Ref<Dictionary<std::string>>& form) {
    if (form.IsNil())
        SetPostContent("", "");
    else
        SetPostContent(EncodeFormData(form), "application/x-www-form-urlencoded");
}

std::string HTTPSocket::EncodeFormData(const Ref<Dictionary<std::string>>& form) const {
    const Ref<const Dictionary<std::string>> held = form; // whatever the events that are served do
    std::string text;
    for (int32_t i = 0; i < held->Count(); ++i) {
        const std::string& key = held->Key(i);
        text.append(i == 0 ? "" : "&").append(EncodeURLString(key)).append("=");
        text.append(EncodeURLString(held->Value(key)));
        RuntimeBackgroundTask();
    }
    return text;
}

// Not quite the usual encoding of forms: "-" and "_" are encoded, while "?", ":", "@", quotation marks, "|" and all
// beyond ASCII pass. Kept on purpose, see docs/reading.md.
std::string HTTPSocket::EncodeURLString(std::string text) {
    // The percent sign goes first, so that what is written for the others stays as it is.
    constexpr std::string_view kEncoded = "%&=,/\\][{}`~-_()*^$#!+;<>\r\n";
    for (const char character : kEncoded) {
        const std::string_view old(&character, 1);
        text = ReplaceAll(text, old, "%" + Right("00" + Hex(Asc(old)), 2));
    }
    return ReplaceAll(text, " ", "+");
}
