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

TEST(InternetHeadersTest, AreReadWithAnyLineEnd) {
    for (const std::string end : {"\r\n", "\n", "\r"}) {
        const std::string block =
            ReplaceAll("HTTP/1.0 200 OK\nA:  one\nb: x\n y\n\tz\na: two:2\nnothing\nA:\t", "\n", end);
        const Ref<InternetHeaders> headers = Parsed(block);
        EXPECT_EQ(headers->FormatHTTPHeaders(), "A: one\r\nb: x y z\r\na: two:2\r\nA: ");
        EXPECT_EQ(headers->Value("a", -1), "one");
        EXPECT_EQ(headers->CommaSeparatedValues("a"), "one, two:2, ");
        EXPECT_EQ(headers->Value("c") + headers->Value(9) + headers->Value("a", 3), "");
        headers->DeleteAllHeaders();
        EXPECT_EQ(headers->Source(), block) << "as it came, whatever is changed";
    }
    // A reason with a colon makes a header of the status line.
    EXPECT_EQ(Parsed("HTTP/1.0 200 a:b")->FormatHTTPHeaders(), "HTTP/1.0 200 a: b");
}

TEST(InternetHeadersTest, KeepRepeatedNamesWithoutGapsButForOneThatIsAskedFor) {
    const Ref<InternetHeaders> headers = Parsed("X: 0\nX: 1\nX: 2\nX: 3");
    headers->Delete("x", 1);
    headers->Delete("X", 7);
    headers->AppendHeader("X", "4");
    EXPECT_EQ(headers->CommaSeparatedValues("X"), "0, 2, 3, 4");
    headers->SetHeader("X", "new", 1);
    headers->SetHeader("X", "far", 5);
    EXPECT_EQ(headers->Value("X", 5) + headers->CommaSeparatedValues("X"), "far0, new, 3, 4");
    headers->SetHeader("x", "only");
    EXPECT_EQ(headers->FormatHTTPHeaders(), "X: far\r\nx: only") << "what is behind the gap stays";
}

TEST(InternetHeadersTest, OfAMailAreWrittenInTheirOrder) {
    EXPECT_EQ(Parsed("X-A: 1\r\nBCC: secret\r\nTo: a\r\nFrom: f\r\ncc: c\r\nReceived: r0\r\nSubject: s\r\nTo: b\r\n"
                     "Received: r1\r\nDate: d\r\nReturn-Path: p\r\nX-A: 2")
                  ->FormatEmailHeaders(),
              "Return-Path: p\r\nReceived: r0\r\nReceived: r1\r\nDate: d\r\nSubject: s\r\n"
              "From: f\r\nTo: a, b\r\nCC: c\r\nX-A: 1\r\nX-A: 2");
}

TEST(InternetHeadersTest, EndAtTheSamePlaceInWhateverPiecesTheyCome) {
    for (const std::string end : {"\r\n", "\n", "\r"}) {
        const std::string head = "HTTP/1.0 200 OK" + end + "A: b";
        // The body has a line end in front.
        const std::string reply = std::string(head).append(end).append(end).append(end).append("x");
        for (std::size_t piece = 1; piece < head.size() + 2 * end.size(); ++piece) {
            HeaderEnd found;
            EXPECT_FALSE(found.Find(reply.substr(0, piece)));
            const auto place = found.Find(reply);
            ASSERT_TRUE(place);
            EXPECT_EQ(std::pair(place->position, place->blankLine), std::pair(head.size(), 2 * end.size())) << piece;
        }
    }
}

// Each of these would take minutes if it were quadratic.
TEST(InternetHeadersTest, TakeAMebibyteByteByByteAndOneNameAHundredThousandTimes) {
    std::string block;
    while (block.size() < (1U << 20U))
        block += "a: b\r\n";
    HeaderEnd end;
    for (std::size_t size = 0; size < block.size(); ++size)
        ASSERT_FALSE(end.Find(std::string_view(block).substr(0, size)));
    EXPECT_TRUE(end.Find(block + "\r\n"));

    const Ref<InternetHeaders> headers = Parsed(block);
    EXPECT_EQ(headers->FormatHTTPHeaders() + "\r\n", block);
    headers->SetHeader("a", "x");
    EXPECT_EQ(headers->FormatHTTPHeaders(), "a: x");
}
