#include "io/textHelpers.h"

#include <gtest/gtest.h>

namespace marvek {
namespace {

using namespace std::string_literals;

TEST(TextHelpers, StringToLongPutsTheFirstCharacterLowest) {
    EXPECT_EQ(stringToLong("IMP!"), 0x21504D49);
    EXPECT_EQ(stringToLong("ATN!xyz"), 0x214E5441);
    EXPECT_EQ(stringToLong("A"), 0x41);
    EXPECT_EQ(stringToLong(""), 0);
    EXPECT_EQ(stringToLong("\xFF\xFF\xFF\xFF"), -1);
}

TEST(TextHelpers, StripFileKeepsTheFolder) {
    EXPECT_EQ(stripFile("C:\\a\\b.bin"), "C:\\a");
    EXPECT_EQ(stripFile("b.bin"), "b.bin");
    EXPECT_EQ(stripFile("/data/levels/L1MA1"), "/data/levels");
    EXPECT_EQ(stripFile("data\\x/L1MA1"), "data\\x");
    EXPECT_EQ(stripFile("/L1MA1"), "");
}

TEST(TextHelpers, StripNullRemovesOnlyTrailingNuls) {
    EXPECT_EQ(stripNull("ab\0\0"s), "ab");
    EXPECT_EQ(stripNull("a\0b\0"s), "a\0b"s);
    EXPECT_EQ(stripNull("\0\0"s), "\0\0"s);
    EXPECT_EQ(stripNull(""), "");
}

TEST(TextHelpers, PadRightNeverCuts) {
    EXPECT_EQ(padRight("ab", 4, "x"), "abxx");
    EXPECT_EQ(padRight("ab", 4, "yz"), "abyy");
    EXPECT_EQ(padRight("abcdef", 4, "x"), "abcdef");
    EXPECT_EQ(padRight("ab", -3, "x"), "ab");
    EXPECT_EQ(padRight("ab", 5, ""), "ab");
}

} // namespace
} // namespace marvek
