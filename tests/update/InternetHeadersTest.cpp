#include "update/InternetHeaders.h"
#include "framework/text/Text.h"
#include "update/HeaderEnd.h"

#include <gtest/gtest.h>

namespace {

Ref<InternetHeaders> Parsed(const std::string& text) {
    const auto headers = New<InternetHeaders>();
    headers->ParseHeaders(text);
    return headers;
}

} // namespace

TEST(InternetHeadersTest, ReadsABlockOfAnyLineEnd) {
    for (const std::string end : {"\r\n", "\n", "\r"}) {
        const std::string block =
            ReplaceAll("HTTP/1.0 200 OK\nA:  one\nb: x\n y\n\tz\na: two:2\nnothing\nA:\t", "\n", end);
        const Ref<InternetHeaders> headers = Parsed(block);
        EXPECT_EQ(headers->FormatHTTPHeaders(), "A: one\r\nb: x y z\r\na: two:2\r\nA: ");
        EXPECT_EQ(headers->NameCount("A"), 3);
        EXPECT_EQ(headers->Value("a", 1), "two:2");
        EXPECT_EQ(headers->Value("a", -1), "one");
        EXPECT_EQ(headers->CommaSeparatedValues("a"), "one, two:2, ");
        EXPECT_EQ(headers->Value("c") + headers->Value(9) + headers->Value("a", 3), "");
        EXPECT_EQ(headers->Name(1) + headers->Value(1), "bx y z");
        headers->DeleteAllHeaders();
        EXPECT_EQ(headers->Count(), 0);
        EXPECT_EQ(headers->Source(), block) << "as it came, whatever is changed";
    }
    // A reason with a colon makes a header of the status line.
    EXPECT_EQ(Parsed("HTTP/1.0 200 a:b")->FormatHTTPHeaders(), "HTTP/1.0 200 a: b");
}

TEST(InternetHeadersTest, KeepsRepeatedNamesWithoutGaps) {
    const auto headers = New<InternetHeaders>();
    for (const char* value : {"0", "1", "2", "3"})
        headers->AppendHeader("X", value);
    headers->Delete("x", 1);
    EXPECT_EQ(headers->CommaSeparatedValues("X"), "0, 2, 3");
    headers->Delete("X", 7);
    headers->Delete("X", 0);
    headers->AppendHeader("X", "4");
    EXPECT_EQ(headers->Source(), "X: 2\r\nX: 3\r\nX: 4");

    headers->SetHeader("X", "new", 1);
    headers->SetHeader("X", "far", 5); // under just that number: a gap
    EXPECT_EQ(headers->NameCount("X"), 3);
    EXPECT_EQ(headers->Value("X", 5) + headers->CommaSeparatedValues("X"), "far2, new, 4");
    headers->SetHeader("x", "only");
    EXPECT_EQ(headers->NameCount("X"), 1);
    EXPECT_EQ(headers->Count(), 2) << "what is behind the gap stays";
    headers->AppendHeader("X", "more");
    EXPECT_EQ(headers->Value("X", 1), "more");
}

TEST(InternetHeadersTest, WritesTheHeadersOfAMailInTheirOrder) {
    const Ref<InternetHeaders> headers =
        Parsed("X-A: 1\r\nBCC: secret\r\nTo: a\r\nFrom: f\r\ncc: c\r\nReceived: r0\r\nSubject: s\r\nTo: b\r\n"
               "Received: r1\r\nDate: d\r\nReturn-Path: p\r\nX-A: 2");
    EXPECT_EQ(headers->FormatEmailHeaders(),
              "Return-Path: p\r\nReceived: r0\r\nReceived: r1\r\nDate: d\r\nSubject: s\r\n"
              "From: f\r\nTo: a, b\r\nCC: c\r\nX-A: 1\r\nX-A: 2");
    EXPECT_EQ(New<InternetHeaders>()->FormatEmailHeaders(), "");
}

TEST(InternetHeadersTest, EndAtTheSamePlaceInWhateverPiecesTheyCome) {
    for (const std::string head :
         {"HTTP/1.0 200 OK\r\nA: b\r\n\r\n", "HTTP/1.0 200 OK\nA: b\n\n", "HTTP/1.0 200 OK\rA: b\r\r"}) {
        const std::size_t blankLine = head[head.size() - 2] == '\r' && head.back() == '\n' ? 4 : 2;
        const std::string reply =
            head + head.substr(head.size() - blankLine / 2) + "x"; // a body with a line end in front
        for (std::size_t piece = 1; piece < head.size(); ++piece) {
            HeaderEnd end;
            EXPECT_FALSE(end.Find(reply.substr(0, piece)));
            const auto found = end.Find(reply);
            ASSERT_TRUE(found);
            EXPECT_EQ(found->position + found->blankLine, head.size()) << piece;
            EXPECT_EQ(found->blankLine, blankLine) << piece;
        }
    }
}

// Each of these would take minutes if it were quadratic.
TEST(InternetHeadersTest, TakesAMebibyteByteByByteAndOneNameAHundredThousandTimes) {
    std::string block = "HTTP/1.0 200 OK\r\n";
    int32_t count = 0;
    for (; block.size() < (1U << 20U); ++count)
        block += "a: b\r\n";
    const std::string text = block + "\r\n";
    HeaderEnd end;
    for (std::size_t size = 0; size < text.size(); ++size)
        ASSERT_FALSE(end.Find(std::string_view(text).substr(0, size)));
    const auto found = end.Find(text);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->position, text.size() - 4);

    const Ref<InternetHeaders> headers = Parsed(block);
    EXPECT_EQ(headers->NameCount("A"), count);
    EXPECT_EQ(headers->FormatHTTPHeaders().size(), static_cast<std::size_t>(count) * 6 - 2);
    headers->SetHeader("a", "x");
    EXPECT_EQ(headers->Source().size(), block.size());
    EXPECT_EQ(headers->Count(), 1);
}
