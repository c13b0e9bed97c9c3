#include "update/InternetHeaders.h"
#include "framework/text/Text.h"
#include "update/HeaderEnd.h"

#include <gtest/gtest.h>

#include <ctime>
#include <functional>

namespace {

Ref<InternetHeaders> Parsed(const std::string& text) {
    const auto headers = New<InternetHeaders>();
    headers->ParseHeaders(text);
    return headers;
}

// Of a processor, not of a clock.
std::clock_t TimeOf(int times, const std::function<void()>& work) {
    const std::clock_t start = std::clock();
    while (times-- > 0)
        work();
    return std::clock() - start;
}

} // namespace

TEST(InternetHeadersTest, AreReadWithAnyLineEnd) {
    for (const std::string end : {"\r\n", "\n", "\r"}) {
        const std::string block =
            ReplaceAll("HTTP/1.0 200 OK\nA:  one\nb: x\n y\n\tz\na: two:2\nnothing\nA:\t", "\n", end);
        const Ref<InternetHeaders> headers = Parsed(block);
        EXPECT_EQ(headers->Count(), 4);
        EXPECT_EQ(headers->NameCount("a"), 3);
        EXPECT_EQ(headers->Value("B") + headers->Value("A", 1) + headers->Value("a:1"), "x y ztwo:2two:2");
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

TEST(InternetHeadersTest, KeepRepeatedNamesWithoutGapsButForOneAskedFor) {
    const Ref<InternetHeaders> headers = Parsed("X: 0\nX: 1\nX: 2\nX: 3");
    headers->Delete("x", 1);
    headers->Delete("X", 7);
    headers->AppendHeader("X", "4");
    EXPECT_EQ(headers->CommaSeparatedValues("X"), "0, 2, 3, 4");
    headers->SetHeader("X", "new", 1);
    headers->SetHeader("X", "far", 5);
    EXPECT_EQ(headers->Value("X", 5) + headers->CommaSeparatedValues("X"), "far0, new, 3, 4");
    headers->Delete("X", 4); // there is none, yet what is behind moves down
    EXPECT_EQ(headers->CommaSeparatedValues("X"), "0, new, 3, 4, far");
    headers->SetHeader("X", "far", 6);
    headers->SetHeader("x", "only");
    EXPECT_EQ(headers->FormatHTTPHeaders(), "X: far\r\nx: only") << "what is behind the gap stays";
    EXPECT_EQ(headers->Source(), "X: 0\nX: 1\nX: 2\nX: 3");
}

TEST(InternetHeadersTest, OfAMailAreWrittenInTheirOrder) {
    EXPECT_EQ(Parsed("X-A: 1\r\nBCC: secret\r\nTo: a\r\nFrom: f\r\ncc: c\r\nReceived: r0\r\nSubject: s\r\nTo: b\r\n"
                     "Received: r1\r\nDate: d\r\nReturn-Path: p\r\nX-A: 2")
                  ->FormatEmailHeaders(),
              "Return-Path: p\r\nReceived: r0\r\nReceived: r1\r\nDate: d\r\nSubject: s\r\n"
              "From: f\r\nTo: a, b\r\nCC: c\r\nX-A: 1\r\nX-A: 2");
}

TEST(InternetHeadersTest, TakeTimeByTheirNumberOnly) {
    const auto find = [](std::size_t size) {
        HeaderEnd end;
        for (std::string text; text.size() < size; text += 'a')
            ASSERT_FALSE(end.Find(text));
    };
    const auto take = [](int lines) {
        std::string block;
        while (lines-- > 0)
            block += "a: b\r\n";
        const Ref<InternetHeaders> headers = Parsed(block);
        EXPECT_EQ(headers->FormatHTTPHeaders() + "\r\n", block);
        headers->SetHeader("a", "x");
        EXPECT_EQ(headers->FormatHTTPHeaders(), "a: x");
    };
    EXPECT_LT(TimeOf(1, [&] { find(80'000); }), 3 * TimeOf(8, [&] { find(10'000); }));
    EXPECT_LT(TimeOf(1, [&] { take(8000); }), 3 * TimeOf(8, [&] { take(1000); }));
}
