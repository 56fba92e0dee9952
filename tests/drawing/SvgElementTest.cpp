#include <string_view>

#include <gtest/gtest.h>

#include "drawing/SvgElement.h"

namespace orvantis::toolkit {
namespace {

TEST(SvgElement, WithoutContentClosesItself) {
  EXPECT_EQ(circle({1.0, 2.26}, 3.0).str(), R"(<circle cx="1" cy="2.3" r="3"/>)");
  EXPECT_EQ(rectangle({1.0, 2.0, 3.0, 4.0}).str(), R"(<rect x="1" y="2" width="3" height="4"/>)");
}

TEST(SvgElement, TextsAndValuesCannotBecomeMarkup) {
  constexpr std::string_view hostile = "\"><script>&\x01\xff";
  EXPECT_EQ(words({0.0, 0.0}, hostile).str(),
            "<text x=\"0\" y=\"0\">&quot;&gt;&lt;script&gt;&amp;\\x01\xEF\xBF\xBD</text>");
  EXPECT_EQ(SvgElement("g").set("id", hostile).str(),
            "<g id=\"&quot;&gt;&lt;script&gt;&amp;\\x01\xEF\xBF\xBD\"/>");
  EXPECT_EQ(SvgElement("g").addTitle(hostile).str(),
            "<g>\n<title>&quot;&gt;&lt;script&gt;&amp;\\x01\xEF\xBF\xBD</title></g>");
}

TEST(SvgElement, AttributesMayComeAfterContent) {
  EXPECT_EQ(words({1.0, 1.0}, "a").set("fill", "none").str(), R"(<text x="1" y="1" fill="none">a</text>)");
}

TEST(SvgElement, NumbersHaveAsManyDecimalsAsAskedFor) {
  EXPECT_EQ(SvgElement("g").set("a", 0.16, 2).set("b", 0.16).set("c", -0.04).str(),
            R"(<g a="0.16" b="0.2" c="0"/>)");
}

TEST(SvgElement, AnEmptyTitleIsNotWritten) {
  EXPECT_EQ(path("M0 0").addTitle("").str(), R"(<path d="M0 0"/>)");
}

}  // namespace
}  // namespace orvantis::toolkit
