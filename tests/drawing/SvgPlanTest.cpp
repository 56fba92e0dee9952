#include <cmath>
#include <limits>
#include <sstream>

#include <boost/property_tree/xml_parser.hpp>
#include <gtest/gtest.h>

#include <filter/detection/Rectangle.h>
#include <filter/detection/Sector.h>

#include "document/Shapes.h"
#include "drawing/Outline.h"
#include "drawing/SvgPlan.h"

namespace orvantis::toolkit {
namespace {

using boost::property_tree::ptree;
using filter::detection::Point;

ptree parse(const std::string& svg) {
  std::istringstream in(svg);
  ptree tree;
  read_xml(in, tree);
  return tree;
}

std::string widthAndHeight(const std::string& svg) {
  const ptree tree = parse(svg);
  const ptree& clip = tree.get_child("svg.defs.clipPath.rect.<xmlattr>");
  return clip.get<std::string>("width") + " x " + clip.get<std::string>("height");
}

PlanContent::Area area(const std::string& name, const std::vector<Point>& ring) {
  return {name, ring, 0};
}

TEST(SvgPlan, NamesAreEscaped) {
  PlanContent content;
  content.title = "a <b> & \"c\"";
  content.fields = {{0, "<field>"}};
  content.areas = {area("<&>\x01", {{0, 0}, {0, 9}, {9, 9}, {9, 0}})};
  const std::string svg = drawPlan(content);
  EXPECT_EQ(parse(svg).get<std::string>("svg.text"), content.title);
  EXPECT_NE(svg.find("&lt;&amp;&gt;\\x01"), std::string::npos);
}

TEST(SvgPlan, AMetreIsAsLongOnBothAxes) {
  PlanContent content;
  content.areas = {area("square", {{10, 10}, {10, 30}, {30, 30}, {30, 10}})};
  EXPECT_EQ(widthAndHeight(drawPlan(content)), "760 x 760");
  content.areas = {area("wide", {{0, 0}, {0, 10}, {40, 10}, {40, 0}})};
  // 40 m and 10 m, each with 2.4 m around: 900 pixels for 44.8 m, so 14.8 m take 297.3.
  EXPECT_EQ(widthAndHeight(drawPlan(content)), "900 x 297.3");
}

TEST(SvgPlan, YPointsUp) {
  PlanContent content;
  content.lines = {{"line", Point(0, 0), Point(0, 10)}};
  const std::string svg = drawPlan(content);
  const std::size_t begin = svg.find("marker-end");
  const std::string path = svg.substr(svg.rfind("d=\"M", begin) + 4, 40);
  double x0 = 0;
  double y0 = 0;
  double x1 = 0;
  double y1 = 0;
  ASSERT_EQ(std::sscanf(path.c_str(), "%lf %lfL%lf %lf", &x0, &y0, &x1, &y1), 4) << path;
  EXPECT_LT(y1, y0);
  EXPECT_EQ(x1, x0);
  // Up is forward, so the mark of the left side is at smaller x.
  const std::string mark = svg.substr(svg.find("r=\"7.5\"") - 40, 40);
  double xMark = 0;
  ASSERT_EQ(std::sscanf(mark.substr(mark.find("cx=") + 4).c_str(), "%lf", &xMark), 1) << mark;
  EXPECT_LT(xMark, x0);
}

TEST(SvgPlan, ACloudOfAnySizeStaysASmallFile) {
  PlanContent content;
  content.areas = {area("square", {{0, 0}, {0, 10}, {10, 10}, {10, 0}})};
  for (int i = 0; i < 400; ++i) {
    for (int j = 0; j < 400; ++j) {
      content.dots.push_back({Point(i / 40.0, j / 40.0), i % 2 == 0});
    }
  }
  EXPECT_LT(drawPlan(content).size(), 300000U);
}

TEST(SvgPlan, EmptyAndDegenerateContentIsDrawn) {
  PlanContent content;
  EXPECT_NO_THROW(parse(drawPlan(content)));
  content.areas = {area("point", {{5, 5}, {5, 5}}), area("none", {})};
  content.lines = {{"", Point(1, 1), Point(1, 1)}};
  EXPECT_NO_THROW(parse(drawPlan(content)));
  content.lines.push_back({std::string(100000, 'n'), Point(1e6, 1), Point(1, 1)});
  EXPECT_NO_THROW(parse(drawPlan(content)));
}

TEST(SvgPlan, CoordinatesTooFarApartAreRefused) {
  PlanContent content;
  const double huge = std::numeric_limits<double>::max();
  content.areas = {area("huge", {{-huge, 0}, {huge, 1}, {0, 0}})};
  EXPECT_THROW(drawPlan(content), std::runtime_error);
}

TEST(Outline, ADiscHasItsFullArea) {
  const filter::detection::Sector disc("disc", 1.0, 1.0 + 2.0 * M_PI, 2.0);
  EXPECT_DOUBLE_EQ(coveredArea(disc), 4.0 * M_PI);
  for (const Point& vertex : outline(disc)) {
    EXPECT_NEAR(std::hypot(vertex.x(), vertex.y()), 2.0, 1e-12);
  }
}

TEST(Outline, ASectorThroughTheNegativeXAxisHasTheAreaItCovers) {
  const filter::detection::Sector sector("slice", 0.75 * M_PI, -0.75 * M_PI, 2.0);
  EXPECT_NEAR(coveredArea(sector), M_PI, 1e-12);
  for (const Point& vertex : outline(sector)) {
    EXPECT_LE(vertex.x(), 1e-12);
  }
}

TEST(Outline, AreasOfRectanglesHaveNoSign) {
  const filter::detection::Rectangle rectangle("r", {Point(2, 0), Point(0, 1)}, 0.0);
  EXPECT_LT(rectangle.area(), 0.0);
  EXPECT_DOUBLE_EQ(coveredArea(rectangle), 2.0);
}

}  // namespace
}  // namespace orvantis::toolkit
