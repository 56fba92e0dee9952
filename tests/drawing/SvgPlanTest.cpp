#include <cmath>
#include <limits>
#include <sstream>
#include <string>
#include <string_view>

#include <boost/property_tree/xml_parser.hpp>
#include <gtest/gtest.h>

#include <filter/detection/Rectangle.h>
#include <filter/detection/Sector.h>

#include "document/Shapes.h"
#include "drawing/Outline.h"
#include "drawing/Palette.h"
#include "drawing/PlanScan.h"
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

template <typename Function>
std::string refusalOf(const Function& function) {
  try {
    function();
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "nothing is refused";
}

// At some distance doubles are as far apart as the lines of the grid, which would then have no end.
TEST(SvgPlan, RefusesWhatIsTooFarFromTheOriginToBeSharp) {
  const auto drawn = [](double x, double y) {
    PlanContent content;
    content.areas = {area("far", {{x, y}, {x, y + 8}, {x + 8, y + 8}, {x + 8, y}})};
    content.lines = {{"line", {x, y}, {x, y + 8}}};
    return drawPlan(content);
  };
  EXPECT_EQ(widthAndHeight(drawn(1e12, -1e12)), "760 x 760");
  for (const double far : {1e14, 1e17, 1e300, std::numeric_limits<double>::max(),
                           std::numeric_limits<double>::infinity(), std::nan("")}) {
    for (const double sign : {1.0, -1.0}) {
      EXPECT_THROW(drawn(sign * far, 0.0), std::runtime_error) << sign * far;
      EXPECT_THROW(drawn(0.0, sign * far), std::runtime_error) << sign * far;
    }
  }
  EXPECT_EQ(refusalOf([&] { drawn(1e17, 0.0); }),
            "zones, lines and tracks are too far from the origin to draw");
  PlanContent apart;
  apart.areas = {area("wide", {{0, 0}, {0, 8}, {1e9, 8}, {1e9, 0}})};
  EXPECT_EQ(refusalOf([&] { drawPlan(apart); }), "zones, lines and tracks are too far apart to draw");
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

std::size_t count(const std::string& text, const std::string& part) {
  std::size_t number = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++number;
  }
  return number;
}

PlanContent::Track track(std::int32_t id, const std::string& className, double y) {
  return {id, {{0, y}, {5, y}, {10, y}}, className};
}

TEST(SvgPlan, TwoPicturesInOnePageShareNoId) {
  PlanContent one;
  one.areas = {area("one", {{0, 0}, {0, 9}, {9, 9}, {9, 0}})};
  PlanContent other = one;
  other.areas[0].ring[0] = Point(0, -1);
  const auto idOf = [](const std::string& svg) {
    return parse(svg).get<std::string>("svg.defs.clipPath.<xmlattr>.id");
  };
  EXPECT_NE(idOf(drawPlan(one)), idOf(drawPlan(other)));
  EXPECT_EQ(idOf(drawPlan(one)), idOf(drawPlan(one))) << "the same picture is the same text";
  one.idPrefix = "mine-";
  const std::string svg = drawPlan(one);
  EXPECT_EQ(idOf(svg), "mine-plan");
  EXPECT_EQ(count(svg, "url(#"), count(svg, "url(#mine-"));
}

TEST(SvgPlan, TakesInTracksAsWellAsZones) {
  PlanContent content;
  content.areas = {area("zone", {{0, 0}, {0, 9}, {9, 9}, {9, 0}})};
  const std::string alone = widthAndHeight(drawPlan(content));
  content.tracks = {{1, {{0, 5}, {100, 5}}, ""}};
  EXPECT_NE(widthAndHeight(drawPlan(content)), alone);
  content.extent = PlanContent::Extent{0, 90, 0, 45};
  EXPECT_EQ(widthAndHeight(drawPlan(content)), "900 x 450") << "what is asked for, without a margin";
}

TEST(SvgPlan, UpToADozenTracksHaveIdsAndMoreAreThinWithACount) {
  PlanContent content;
  for (int i = 0; i < 12; ++i) {
    content.tracks.push_back(track(700 + i, "person", 3.0 * i));
  }
  const std::string dozen = drawPlan(content);
  EXPECT_EQ(count(dozen, ">700</text>"), 1U);
  EXPECT_EQ(count(dozen, "person, id at its end"), 1U);
  content.tracks.push_back(track(712, "car", 40));
  const std::string crowd = drawPlan(content);
  EXPECT_EQ(count(crowd, ">700</text>"), 0U);
  EXPECT_EQ(count(crowd, "person: 12 tracks"), 1U);
  EXPECT_EQ(count(crowd, "car: 1 track<"), 1U);
  EXPECT_EQ(count(crowd, "stroke-opacity=\"0.35\""), 13U + 2U) << "thirteen tracks and two samples";
  EXPECT_EQ(count(crowd, "<title>person 700</title>"), 1U) << "for the line and its beginning together";
}

TEST(SvgPlan, HundredsOfTracksAndCrossingsStayASmallFile) {
  PlanContent content;
  content.timeline.emplace().lines.push_back({"Gate", {}});
  content.timeline->end = 36000.0;
  for (int i = 0; i < 500; ++i) {
    PlanContent::Track one = track(i, "person", 0.1 * i);
    for (int k = 0; k < 1000; ++k) {
      one.path.emplace_back(10.0 + 0.001 * k, 0.1 * i);
    }
    content.tracks.push_back(one);
    content.crossings.push_back({Point(5, 0.1 * i), "person " + std::to_string(i)});
    content.timeline->lines[0].crossings.push_back({72.0 * i, i % 2 == 0, i});
  }
  const std::string svg = drawPlan(content);
  EXPECT_LT(svg.size(), 1000000U);
  EXPECT_EQ(count(svg, "<title>500 crossings, at most "), 1U);
  EXPECT_NO_THROW(parse(svg));
}

TEST(SvgPlan, WhatStandsUpIsDarkerThanTheGround) {
  PlanContent content;
  content.areas = {area("zone", {{0, 0}, {0, 9}, {9, 9}, {9, 0}})};
  for (int i = 0; i < 50; ++i) {
    content.dots.push_back({Point(0.1 * i, 1), false, -1.7 + 0.01 * (i % 3)});
  }
  content.dots.push_back({Point(1, 5), false, 0.0});
  content.dots.push_back({Point(2, 5), false, -1.2});
  content.dots.push_back({Point(3, 5), true, 0.0});
  EXPECT_NEAR(groundOf(content.dots), -1.7, 1e-9);
  const std::string svg = drawPlan(content);
  for (const std::string_view colour : {palette::ground, palette::low, palette::high, palette::counted}) {
    // Once in the scan, once in the legend.
    EXPECT_EQ(count(svg, "stroke=\"" + std::string(colour) + "\""), 2U) << colour;
  }
}

TEST(SvgPlan, NamesShowWhenThePointerIsOnTheirShape) {
  PlanContent content;
  content.areas = {area("a<b", {{0, 0}, {0, 9}, {9, 9}, {9, 0}})};
  content.crossings = {{Point(1, 1), "x & y"}};
  const std::string svg = drawPlan(content);
  EXPECT_EQ(count(svg, "<title>a&lt;b</title></path>"), 1U);
  EXPECT_EQ(count(svg, "<title>x &amp; y</title></path>"), 1U);
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
