#include "engine/PartNames.h"

#include "engine/StartCut.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

using Pair = std::pair<std::string, std::string>;

TEST(PartNames, AreMadeAndTakenApart) {
    EXPECT_EQ(PartName("film.mov", 7) + PartName("", 1000), "film.mov.007.1000");
    for (const auto& [name, base] :
         {Pair("a.mov.001", "a.mov"), {"a.mov.1000", "a.mov."}, {".001", ""}, {"€𝄞.€\xFFx", "€𝄞"}})
        EXPECT_EQ(BaseOfPart(name), base) << name;
    // Before the first point, and not the last; in front of a name without one.
    for (const auto& [name, variant] : {Pair("my.film.mov", "my 1.film.mov"), {"film", " 1film"}, {".film", " 1.film"}})
        EXPECT_EQ(NumberedVariant(name, 1), variant) << name;
    for (const char* name : {"a.mov.001", "A.MOV.002", "a.mov.1000", "a.mov2.001", "a.mov.003.DOWNLOAD", "a.mov 12"})
        EXPECT_TRUE(BelongsToSeries(name, "a.mov")) << name;
    for (const char* name : {"a.mov", "a.mov.part", "my a.mov.001", "a.mo"})
        EXPECT_FALSE(BelongsToSeries(name, "a.mov")) << name;
}

// Where parts are in the way, numbers pile up; and only the numbers that the new series will use count.
TEST(PartNames, ACutFindsABaseThatNoPartIsInTheWayOf) {
    const TestFolder folder;
    for (const char* name :
         {"a.mov", "a.mov.000", "a.mov.004", "b.mov.003", "b 1.mov.002", "c.001", "d.12345", "d 1.x", "e.1"})
        folder.Write(name, "");
    std::filesystem::create_symlink("nowhere", folder.Path(" 1c.001")); // in the way like anything else
    const std::tuple<std::string, int32_t, std::string> table[] = {
        {"a.mov", 3, "a.mov"},         {"a.mov", 4, "a 1.mov"},   {"b.mov", 2, "b.mov"},
        {"b.mov", 3, "b 1 2.mov"},     {"c", 1, " 2 1c"},         {"c", -1, "c"},
        {"b.mov", 99999, "b 1 2.mov"}, {"c", INT32_MAX, " 2 1c"}, {"d", 12344, "d"},
        {"d", 12345, " 1d"},           {"e", 99999, "e"},         {"D", 99999, "D"}};
    for (const auto& [name, count, base] : table)
        EXPECT_EQ(FreeBaseName(*New<FolderItem>(folder.Path()), name, count), base) << count;
    EXPECT_EQ(PartCount(0, 100) + PartCount(100, 100) + PartCount(101, 100) + PartCount(5ULL << 30U, INT32_MAX), 6);
    EXPECT_EQ(PartCount(100, -1), -100);
    EXPECT_EQ(PartCount(100, 0), INT32_MAX);
}

} // namespace
