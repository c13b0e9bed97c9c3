#include "update/InternetHeaders.h"
#include "framework/text/Text.h"
#include "tests/support/Slowness.h"
#include "update/HeaderEnd.h"

#include <gtest/gtest.h>

#include <ctime>

namespace {

Ref<InternetHeaders> Parsed(const std::string& text) {
    const auto headers = New<InternetHeaders>();
    headers->ParseHeaders(text);
    return headers;
}

// 2^`pairs` names that libstdc++ hashes to one and the same number: either 16 bytes of a pair take its function from
// one state to the same other.
std::vector<std::string> CollidingNames(int pairs) {
    constexpr uint64_t kFactor = 0xC6A4A7935BD1E995, kInverse = 0x5F7A0EA7E59B19BD;
    const auto shift = [](uint64_t word) { return word ^ (word >> 47U); };
    const auto mixed = [&](uint64_t word) { return shift(word * kFactor) * kFactor; };
    const auto unmixed = [&](uint64_t word) { return shift(word * kInverse) * kInverse; };
    const auto bytes = [](uint64_t word) { return std::string(reinterpret_cast<const char*>(&word), sizeof word); };
    std::vector<std::string> names{""};
    uint64_t state = 0xC70F6907 ^ (static_cast<uint64_t>(pairs) * 16 * kFactor);
    uint64_t word = 0x6161616161616161;
    for (int pair = 0; pair < pairs; ++pair) {
        const std::string one = bytes(word) + bytes(word);
        const uint64_t end = ((state ^ mixed(word)) * kFactor) ^ mixed(word);
        std::string other;
        do {
            ++word;
            other = bytes(word) + bytes(unmixed(end ^ ((state ^ mixed(word)) * kFactor)));
        } while (FoldedCase(other) != other);
        for (std::size_t i = names.size(); i-- > 0; names[i] += one)
            names.push_back(names[i] + other);
        state = end * kFactor;
    }
    return names;
}

// In seconds on a processor.
double TimeToStore(const std::vector<std::string>& names) {
    Dictionary<int32_t> dictionary;
    const std::clock_t start = std::clock();
    for (const std::string& name : names)
        dictionary.SetValue(name, 0);
    EXPECT_EQ(dictionary.Count(), static_cast<int32_t>(names.size()));
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

} // namespace

TEST(DictionaryTest, TakesNamesThatCollideInAHashAsFastAsOthers) {
    std::vector<std::string> names = CollidingNames(14);
    ASSERT_EQ(std::hash<std::string>()(FoldedCase(names.front())), std::hash<std::string>()(FoldedCase(names.back())));
    const double colliding = TimeToStore(names);
    for (std::size_t i = 0; i < names.size(); ++i)
        names[i] += std::to_string(i);
    EXPECT_LT(colliding, 10 * TimeToStore(names));
}

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

TEST(InternetHeadersTest, KeepRepeatedNamesWithoutGapsButForOneThatIsAskedFor) {
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
    while (block.size() < (1U << 20U) / kSlowness)
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
