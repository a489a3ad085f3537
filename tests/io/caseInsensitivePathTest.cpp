#include "io/caseInsensitivePath.h"

#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace marvek {
namespace {

TEST(FindIgnoringCase, PrefersTheExactNameThenMatchesEachPartIgnoringCase) {
    test::TempDir folder;
    std::filesystem::create_directories(folder / "Sub");
    test::writeBytes(folder / "Sub" / "World2.CFG", {1});
    test::writeBytes(folder / "l1ma1", {1});
    test::writeBytes(folder / "L1MA1", {2});

    EXPECT_EQ(findIgnoringCase(folder.path(), "L1MA1"), folder / "L1MA1");
    EXPECT_EQ(findIgnoringCase(folder.path(), "l1MA1"), folder / "L1MA1") << "smallest name wins";
    EXPECT_EQ(findIgnoringCase(folder.path(), "sub\\world2.cfg"),
              folder.path() / "Sub" / "World2.CFG");
    EXPECT_EQ(findIgnoringCase(folder.path(), "missing"), std::nullopt);
    EXPECT_EQ(findIgnoringCase(folder.path(), ""), std::nullopt);
    EXPECT_EQ(findIgnoringCase(folder / "nowhere", "x"), std::nullopt);
}

} // namespace
} // namespace marvek
