#include "update/InternetHeaders.h"

#include "framework/text/Number.h"
#include "framework/text/Text.h"
#include "framework/threads/Yield.h"

#include <algorithm>
#include <utility>

namespace {

constexpr const char* kLineEnd = "\r\n";

std::string KeyOf(const std::string& name, int64_t index) {
    return index == 0 ? name : name + ":" + std::to_string(index);
}

std::string NameIn(const std::string& key) {
    return NthField(key, ":", 1);
}

// Joins lines with the line end of messages.
class Lines {
public:
    void Add(const std::string& name, const std::string& value) {
        if (!text_.empty())
            text_.append(kLineEnd);
        text_.append(name).append(": ").append(value);
    }
    const std::string& Text() const { return text_; }

private:
    std::string text_;
};

} // namespace

InternetHeaders::InternetHeaders()
    : _rawHeaders(std::make_shared<std::string>()),
      headers_(New<Dictionary<std::string>>()),
      numbered_(New<Dictionary<int32_t>>()) {}

Dictionary<std::string>& InternetHeaders::Headers() const {
    if (inBlock_) {
        InternetHeaders taken;
        const std::shared_ptr<const std::string> block = _rawHeaders;
        for (HeaderReader reader = Reader(); reader.Next();)
            taken.AppendHeader(reader.Name(), reader.Value());
        if (inBlock_ && block == _rawHeaders) { // whatever the events did
            headers_ = taken.headers_;
            numbered_ = taken.numbered_;
            inBlock_ = false;
        }
    }
    return *headers_;
}

// A name with a colon is the key of one that is repeated.
bool InternetHeaders::StandsInBlock(const std::string& name) const {
    return inBlock_ && name.find(':') == std::string::npos;
}

// A name that comes a hundred thousand times must not be counted through at each.
void InternetHeaders::AppendHeader(const std::string& name, const std::string& value) {
    if (!Headers().HasKey(name)) {
        Headers().SetValue(name, value);
        return;
    }
    const std::string plain = NameIn(name);
    int32_t number = numbered_->Lookup(plain, 0) + 1;
    while (Headers().HasKey(KeyOf(plain, number))) {
        ++number;
        RuntimeBackgroundTask();
    }
    Headers().SetValue(KeyOf(plain, number), value);
    numbered_->SetValue(plain, number);
}

std::string InternetHeaders::CommaSeparatedValues(const std::string& name) const {
    Headers(); // by number they are found at once
    std::string values;
    const int32_t count = NameCount(name);
    for (int32_t index = 0; index < count; ++index) {
        values.append(index == 0 ? "" : ", ").append(Value(name, index));
        RuntimeBackgroundTask();
    }
    return values;
}

int32_t InternetHeaders::Count() const {
    if (!inBlock_)
        return headers_->Count();
    int32_t count = 0;
    for (HeaderReader reader = Reader(); reader.Next();)
        ++count;
    return count;
}

void InternetHeaders::Delete(const std::string& name) {
    Headers();
    for (int32_t index = NameCount(name); index-- > 0;) {
        Headers().Remove(KeyOf(name, index));
        RuntimeBackgroundTask();
    }
    numbered_->Remove(NameIn(name));
}

void InternetHeaders::Delete(const std::string& name, int32_t index) {
    Headers().Remove(KeyOf(name, index));
    for (int64_t i = int64_t(index) + 1; Headers().HasKey(KeyOf(name, i)); ++i) {
        Headers().SetValue(KeyOf(name, i - 1), Headers().Value(KeyOf(name, i)));
        Headers().Remove(KeyOf(name, i));
        RuntimeBackgroundTask();
    }
    numbered_->Remove(NameIn(name));
}

// The text that was parsed stays.
void InternetHeaders::DeleteAllHeaders() {
    inBlock_ = false;
    headers_->Clear();
    numbered_->Clear();
}

std::string InternetHeaders::Name(int32_t position) const {
    return position < 0 || position >= Headers().Count() ? std::string() : NameIn(Headers().Key(position));
}

int32_t InternetHeaders::NameCount(const std::string& name) const {
    int32_t count = 0;
    if (StandsInBlock(name)) {
        for (HeaderReader reader = Reader(); reader.Next();)
            count += reader.IsNamed(name) ? 1 : 0;
        return count;
    }
    while (Headers().HasKey(KeyOf(name, count))) {
        ++count;
        RuntimeBackgroundTask();
    }
    return count;
}

void InternetHeaders::SetHeader(const std::string& name, const std::string& value) {
    if (NameCount(name) >= 2)
        Delete(name);
    Headers().SetValue(name, value);
}

void InternetHeaders::SetHeader(const std::string& name, const std::string& value, int32_t index) {
    const std::string key = KeyOf(name, index);
    if (Headers().HasKey(key))
        Headers().SetValue(key, value);
    else
        AppendHeader(key, value);
}

std::string InternetHeaders::Source() const {
    return _rawHeaders->empty() ? FormatHTTPHeaders() : *_rawHeaders;
}

std::string InternetHeaders::Value(int32_t position) const {
    return position < 0 || position >= Headers().Count() ? std::string() : Headers().Value(Headers().Key(position));
}

std::string InternetHeaders::Value(const std::string& name) const {
    return Value(name, 0);
}

std::string InternetHeaders::Value(const std::string& name, int32_t index) const {
    int32_t ahead = std::max(index, 0); // of it, of that name
    if (!StandsInBlock(name))
        return Headers().Lookup(KeyOf(name, ahead), "");
    for (HeaderReader reader = Reader(); reader.Next();)
        if (reader.IsNamed(name) && ahead-- == 0)
            return reader.Value();
    return {};
}

std::string InternetHeaders::DetermineEOLCharacter(std::string_view text) const {
    for (const std::string_view lineEnd : {"\r\n", "\n", "\r"})
        if (FindInSteps(text, lineEnd) != std::string_view::npos)
            return std::string(lineEnd);
    return kLineEnd;
}

// BCC is left out here and has no line of its own above: it is never sent.
std::string InternetHeaders::FormatEmailHeaders() const {
    Headers(); // by number they are found at once
    Lines lines;
    const auto addOne = [&](const std::string& name, const std::string& value) {
        if (NameCount(name) > 0)
            lines.Add(name, value);
    };
    addOne("Return-Path", Value("Return-Path"));
    const int32_t received = NameCount("Received");
    for (int32_t index = 0; index < received; ++index) {
        lines.Add("Received", Value("Received", index));
        RuntimeBackgroundTask();
    }
    for (const char* name : {"Date", "Subject", "From"})
        addOne(name, Value(name));
    for (const char* name : {"To", "CC"})
        addOne(name, CommaSeparatedValues(name));
    for (int32_t position = 0; position < Headers().Count(); ++position) {
        const std::string name = Name(position);
        if (InStr(0, ":Date:Subject:From:To:CC:BCC:Received:Return-Path:", ":" + name + ":") == 0)
            lines.Add(name, Value(position));
        RuntimeBackgroundTask();
    }
    return lines.Text();
}

std::string InternetHeaders::FormatHTTPHeaders() const {
    Lines lines;
    for (int32_t position = 0; position < Headers().Count(); ++position) {
        lines.Add(Name(position), Value(position));
        RuntimeBackgroundTask();
    }
    return lines.Text();
}

// They stay in their text until somebody changes them or walks through them: most replies are asked for a name or two,
// and short headers would take a hundred times their room.
void InternetHeaders::ParseHeaders(std::string text) {
    const auto block = std::make_shared<const std::string>(std::move(text));
    const std::string lineEnd = DetermineEOLCharacter(*block);
    DeleteAllHeaders();
    _rawHeaders = block;
    lineEnd_ = lineEnd;
    inBlock_ = true;
}
