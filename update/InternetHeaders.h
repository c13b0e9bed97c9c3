#pragma once

#include "framework/base/Dictionary.h"
#include "update/HeaderReader.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

// Message headers, as HTTP and mail have them: by name, without regard to case, several of one name allowed. The first
// of a name is kept under the name itself, the next under name:1, name:2 and so on, in the order of their coming. An
// index is that number, 0 for the plain name. Used by one thread at a time; on the main thread its loops serve events,
// so hold the object.
class InternetHeaders : public Object {
public:
    InternetHeaders();

    // Adds a value, whatever the name has already.
    virtual void AppendHeader(const std::string& name, const std::string& value);
    // All values of the name in the order of their index, joined by ", ".
    virtual std::string CommaSeparatedValues(const std::string& name) const;
    virtual int32_t Count() const; // of headers; one that is repeated counts each time
    virtual void Delete(const std::string& name);
    // Those of a higher index move down by one.
    virtual void Delete(const std::string& name, int32_t index);
    virtual void DeleteAllHeaders();
    // Name at a position from 0, in the order of their coming; empty behind the last.
    virtual std::string Name(int32_t position) const;
    virtual int32_t NameCount(const std::string& name) const;
    // Makes the value the only one of its name.
    virtual void SetHeader(const std::string& name, const std::string& value);
    // Replaces the value of that index. Where there is none it comes under just that index, so a gap may arise: what
    // lies behind a gap is found by its index or its position only.
    virtual void SetHeader(const std::string& name, const std::string& value, int32_t index);
    // The text that was parsed, as it came, whatever has been changed since; else the headers line by line.
    virtual std::string Source() const;
    virtual std::string Value(int32_t position) const; // empty where there is none, like the next two
    virtual std::string Value(const std::string& name) const;
    virtual std::string Value(const std::string& name, int32_t index) const;

    // The line end of a text: the first of CR LF, LF and CR that it has anywhere, else CR LF.
    virtual std::string DetermineEOLCharacter(std::string_view text) const;
    // The headers for sending, without a line end behind the last: of a mail in a set order and without BCC, of HTTP
    // in the order of their coming.
    virtual std::string FormatEmailHeaders() const;
    virtual std::string FormatHTTPHeaders() const;
    // Takes over a block of headers in place of those there are. Folded lines are joined by one blank; lines without a
    // colon, a status line say, are passed over.
    virtual void ParseHeaders(std::string text);

protected:
    // The headers by key. Those of a block are taken out of its text at the first call, which takes many times its
    // room.
    Dictionary<std::string>& Headers() const;
    std::shared_ptr<const std::string> _rawHeaders; // as parsed; empty for headers made by hand

private:
    HeaderReader Reader() const { return {_rawHeaders, lineEnd_}; }
    bool StandsInBlock(const std::string& name) const;

    std::string lineEnd_;          // of the block
    mutable bool inBlock_ = false; // the headers still stand in its text alone
    mutable Ref<Dictionary<std::string>> headers_;
    mutable Ref<Dictionary<int32_t>> numbered_; // by name: up to which number its keys are known to have no gap
};
