#include <string>

#include <gtest/gtest.h>

#include "zones/LowerCase.h"

namespace orvantis::filter::detection {
namespace {

TEST(LowerCase, TurnsCapitalsAndNothingElse) {
  EXPECT_EQ(toLower("PolyGON"), "polygon");
  EXPECT_EQ(toLower("ABCDEFGHIJKLMNOPQRSTUVWXYZ"), "abcdefghijklmnopqrstuvwxyz");
  EXPECT_EQ(toLower("@[`{ az 09"), "@[`{ az 09");
  EXPECT_EQ(toLower(""), "");
}

TEST(LowerCase, LeavesBytesBeyondAsciiAndZeroBytesAlone) {
  EXPECT_EQ(toLower("\xC3\x84\xFF"), "\xC3\x84\xFF");
  EXPECT_EQ(toLower(std::string("A\0B", 3)), std::string("a\0b", 3));
}

}  // namespace
}  // namespace orvantis::filter::detection
