#include "framework/files/BinaryStream.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

namespace {

constexpr int32_t kBlock = 1048576;

class StreamTest : public testing::Test {
protected:
    Ref<BinaryStream> Source(const std::string& content) const {
        folder.Write("from", content);
        return folder.Item("from")->OpenAsBinaryFile(false);
    }

    Ref<BinaryStream> Target() const { return folder.Item("to")->CreateBinaryFile(""); }

    const TestFolder folder;
    const std::string bytes = Pattern(std::size_t{4} * kBlock);
};

TEST_F(StreamTest, MovesBlocksExactlyAndNothingBehindTheEnd) {
    const Ref<BinaryStream> from = Source(bytes);
    const Ref<BinaryStream> to = Target();
    EXPECT_EQ(from->Read(0) + from->Read(-1) + from->Read(INT32_MIN), "");
    to->Write(from->Read(5)); // both ways to move bytes share one position
    to->WriteFrom(*from, 0, kBlock);
    to->WriteFrom(*from, -7);
    to->WriteFrom(*from, kBlock, INT64_MAX);
    to->Write(from->Read(200000));
    to->WriteFrom(*from, INT32_MAX);
    EXPECT_TRUE(from->AtEOF());
    to->WriteFrom(*from, kBlock);
    EXPECT_EQ(from->Read(1), "");
    EXPECT_TRUE(folder.Read("to") == bytes);
    from->Close();
    from->Close();
    EXPECT_TRUE(from->AtEOF());
    EXPECT_TRUE(Source("")->AtEOF());
}

TEST_F(StreamTest, ASourceMayShrinkAndGrowWhileItIsRead) {
    const Ref<BinaryStream> from = Source(bytes);
    const Ref<BinaryStream> to = Target();
    to->WriteFrom(*from, kBlock);
    folder.WriteSparse("from", kBlock + 10);
    to->WriteFrom(*from, kBlock);
    EXPECT_TRUE(from->AtEOF());
    EXPECT_TRUE(folder.Read("to") == bytes.substr(0, kBlock + 10));
    folder.WriteSparse("from", 10);
    EXPECT_TRUE(from->AtEOF());
    folder.WriteSparse("from", kBlock + 12);
    EXPECT_EQ(from->Read(5).size(), 2U);
}

} // namespace
