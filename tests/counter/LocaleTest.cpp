#include <stdexcept>
#include <string>
#include <vector>

#include <boost/property_tree/ptree.hpp>
#include <gtest/gtest.h>

#include <filter/detection/CounterLines.h>
#include <settings/SettingsManager.h>

#include "support/GroupingLocale.h"
#include "support/LogCapture.h"
#include "support/Settings.h"

namespace orvantis::filter::detection {
namespace {

using orvantis::testing::GroupingLocale;
using orvantis::testing::loadText;
using orvantis::testing::LogCapture;
using orvantis::testing::saveText;

using Point = CounterLine::point;
using Texts = std::vector<std::string>;

CounterLine longLine() {
  return {"L", Point(123456.5, 0.25), Point(-1e20, 4), nullptr, CounterLineDirectionType::LEFT};
}

constexpr auto longLineText =
    R"("CounterLine":{"name":"L","first":{"x:"123456","y:"0.25"},"second":{"x:"-1e+20","y:"4"}})";

TEST(CounterLinesInAGroupingLocale, TracesAreAsEver) {
  const GroupingLocale locale;
  CounterLine::polygon area;
  area.outer() = {Point(1234.5, 0), Point(0, 1234.5), Point(0, 0)};
  CounterLines lines;
  const LogCapture log;
  longLine().within(area);
  CounterLine("L", {0, 0}, {1, 0}, nullptr, CounterLineDirectionType::LEFT).direction(Point(1234.5, 123456));
  lines.insert(longLine());
  EXPECT_EQ(log.texts(LogLevel::Trace),
            (Texts{"within:segment:'L':123456:0.25:-1e+20:4",
                   "within:polygon:'L':(((1234.5, 0), (0, 1234.5), (0, 0)))", "within:isWithin:'L':0=0:0",
                   "direction::'L':1234.5:123456::::0:0:1:0:--:1:==:0**123456",
                   "CounterLines::insert:1:" + std::string(longLineText)}));
}

TEST(CounterLinesInAGroupingLocale, MessagesGroupNoDigits) {
  const GroupingLocale locale;
  CounterLine line;
  try {
    line.setPoints(std::vector<Point>(1234567, Point(0, 0)));
    ADD_FAILURE() << "nothing thrown";
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "CounterLine points size is:1234567 must be:2");
  }
}

TEST(CounterLinesInAGroupingLocale, NumbersAreWrittenAndReadAsEver) {
  const GroupingLocale locale;
  CounterLines lines;
  lines.insert(longLine());
  SettingsManager saved;
  lines.save(saved);
  const auto& entry = saved.getTree().get_child("CounterLines.CounterLine");
  EXPECT_EQ(entry.get_child("first.x").data(), "123456.5");
  EXPECT_EQ(entry.get_child("first.y").data(), "0.25");

  SettingsManager settings;
  loadText(settings, saveText(saved));
  CounterLines copy;
  copy.load(settings);
  ASSERT_EQ(copy.size(), 1U);
  const CounterLine line = copy.clone().at("L");
  EXPECT_EQ(line.getPoints()[0].x(), 123456.5);
  EXPECT_EQ(line.getPoints()[1].x(), -1e20);
}

}  // namespace
}  // namespace orvantis::filter::detection
