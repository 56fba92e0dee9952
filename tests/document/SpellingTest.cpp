#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "document/Spelling.h"

namespace orvantis::toolkit {
namespace {

TEST(Spelling, TheNearestWordIsMeant) {
  const std::vector<std::string_view> words = {"zMin", "zMax", "name", "EvaluationField", "index"};
  EXPECT_EQ(nearest("zmin", words), "zMin");
  EXPECT_EQ(nearest("EvalutaionFeild", words), "EvaluationField");
  EXPECT_EQ(nearest("nmae", words), "name");
  EXPECT_EQ(nearest("idx", words), "");
  EXPECT_EQ(nearest("", words), "");
  EXPECT_EQ(nearest(std::string(100000, 'x'), words), "");
}

}  // namespace
}  // namespace orvantis::toolkit
