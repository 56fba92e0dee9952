#include <string>

#include <gtest/gtest.h>

#include "text/LowerCase.h"

namespace orvantis::toolkit {
namespace {

TEST(LowerCase, TurnsCapitalsAndNothingElse) {
  EXPECT_EQ(lowerCase("PolyGON"), "polygon");
  EXPECT_EQ(lowerCase("ABCDEFGHIJKLMNOPQRSTUVWXYZ"), "abcdefghijklmnopqrstuvwxyz");
  EXPECT_EQ(lowerCase("@[`{ az 09"), "@[`{ az 09");
  EXPECT_EQ(lowerCase(""), "");
}

TEST(LowerCase, LeavesBytesBeyondAsciiAndZeroBytesAlone) {
  EXPECT_EQ(lowerCase("\xC3\x84\xFF"), "\xC3\x84\xFF");
  EXPECT_EQ(lowerCase(std::string("A\0B", 3)), std::string("a\0b", 3));
}

}  // namespace
}  // namespace orvantis::toolkit
