#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <filter/detection/Polygon.h>
#include <filter/detection/Sector.h>

#include "document/Configuration.h"
#include "session/BestFrames.h"
#include "session/ExplanationRecords.h"
#include "session/HeightWatch.h"
#include "session/LineHistory.h"
#include "session/Session.h"
#include "session/ZoneReach.h"

namespace orvantis::toolkit {
namespace {

using filter::detection::Point;
using filter::detection::Polygon;
using filter::detection::Zone3dBase;
using filter::monitor::CrossingVerdict;
using filter::monitor::Stamp;
using filter::monitor::TrackedObject;
using namespace std::chrono_literals;

using Cloud = std::vector<std::array<double, 3>>;

Points viewOf(const Cloud& cloud) {
  return filter::classify::PointsView<double>::interleaved(cloud.data(), 24, cloud.size());
}

Zone3dBase square() {
  const std::vector<Point> corners = {{0, 0}, {0, 4}, {4, 4}, {4, 0}};
  return {std::make_shared<Polygon>("square", corners), 0.5, 2.0};
}

TEST(ZoneReach, TellsWhatIsInsideTheOutlineButBelowOrAboveTheHeights) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const Cloud cloud = {{1, 1, 0.5}, {1, 1, 2.0}, {1, 1, 0.4}, {2, 2, -3},
                       {3, 3, 2.5}, {5, 5, 1},   {1, nan, 0}};
  const ZoneReach reach = reachOf(square(), viewOf(cloud));
  EXPECT_EQ(reach.between, 2U);
  EXPECT_EQ(reach.below, 2U);
  EXPECT_EQ(reach.above, 1U);
  EXPECT_EQ(reach.lowest, -3.0);
  EXPECT_EQ(reach.highest, 2.5);
  EXPECT_FALSE(reach.nearest);
}

TEST(ZoneReach, TellsTheNearestPointOnlyWhenNoneIsInsideTheOutline) {
  const Cloud outside = {{10, 10, 0}, {7, 8, 1}, {2, 4.25, 9}, {-3, 2, 0}};
  const ZoneReach reach = reachOf(square(), viewOf(outside));
  EXPECT_EQ(reach.insideOutline(), 0U);
  ASSERT_TRUE(reach.nearest);
  EXPECT_EQ(reach.nearest->distance, 0.25);
  EXPECT_EQ(reach.nearest->at.y, 4.25);
  EXPECT_EQ(reachOf(square(), viewOf({{7, 8, 1}})).nearest->distance, 5.0);  // 3 and 4 off the corner
}

TEST(ZoneReach, APointOnTheBorderIsOutsideAndNoDistanceOff) {
  EXPECT_EQ(reachOf(square(), viewOf({{0, 2, 1}})).nearest->distance, 0.0);
}

TEST(ZoneReach, OfASectorTakesThePartThatItsDrawnOutlineCutsOff) {
  const Zone3dBase disc(std::make_shared<filter::detection::Sector>("disc", 0.0, 0.0, 100.0), 0.0, 1.0);
  // Between two vertices of the outline, a hair inside the arc.
  const double angle = 1.5 * 3.14159265358979 / 180.0;
  const ZoneReach reach = reachOf(disc, viewOf({{99.99 * std::cos(angle), 99.99 * std::sin(angle), 0.5}}));
  EXPECT_EQ(reach.between, 1U);
}

TEST(ZoneReach, OfNothingIsNothing) {
  EXPECT_FALSE(reachOf(square(), viewOf({})).nearest);
  EXPECT_EQ(reachOf(Zone3dBase(), viewOf({{1, 1, 1}})).insideOutline(), 0U);
}

ZoneMoment moment(Stamp stamp, std::uint64_t counted, std::uint64_t below, double distance) {
  ZoneMoment result;
  result.stamp = stamp;
  result.zone.counted = counted;
  result.reach.below = below;
  if (distance > 0.0) {
    result.reach.nearest = NearestPoint{{}, distance};
  }
  return result;
}

TEST(BestFrames, TakeTheMostPointsThenTheMostInsideTheOutlineThenTheNearest) {
  BestFrames best;
  EXPECT_TRUE(best.moments().empty());
  best.add({moment(0s, 0, 0, 3.0)});
  best.add({moment(1s, 0, 0, 2.0)});
  best.add({moment(2s, 0, 0, 2.5)});
  EXPECT_EQ(best.moments()[0].stamp, Stamp(1s));
  best.add({moment(3s, 0, 7, 0.0)});
  best.add({moment(4s, 0, 6, 0.0)});
  EXPECT_EQ(best.moments()[0].stamp, Stamp(3s));
  best.add({moment(5s, 1, 0, 0.0)});
  best.add({moment(6s, 1, 0, 0.0)});
  EXPECT_EQ(best.moments()[0].stamp, Stamp(5s)) << "of equal ones the first";
}

TrackedObject person(std::int32_t id, double y) {
  return {id, core::State(5.0, y, 0.5, 0.5, 0.0), 0.0, 1.8, "person"};
}

// Feeds one list of objects a second to a session and the history of its line.
LineHistory historyOf(const std::vector<std::vector<TrackedObject>>& frames,
                      std::optional<std::int32_t> track) {
  Configuration configuration;
  configuration.lines.emplace(
      "Door", filter::detection::CounterLine("Door", {0.0, 0.0}, {10.0, 0.0}, nullptr,
                                             filter::detection::CounterLineDirectionType::ON));
  Session session(configuration);
  LineHistory history(configuration.lines.at("Door"), 0.0, 2s, track);
  for (std::size_t i = 0; i < frames.size(); ++i) {
    const Stamp stamp = std::chrono::seconds(i);
    const SessionFrame frame = session.take(stamp, std::nullopt, &frames[i]);
    history.add(stamp, frames[i], crossingsOf(frame), session.lines());
  }
  return history;
}

TEST(LineHistory, KeepsEveryTrackAlsoThoseThatTheCounterForgot) {
  const LineHistory history =
      historyOf({{person(1, -2), person(2, -2)}, {person(1, 0)}, {person(1, 2)}, {}, {}, {person(2, -1)}}, 1);
  const std::vector<TrackStory>& stories = history.stories();
  ASSERT_EQ(stories.size(), 3U);  // 2 came back as somebody else
  EXPECT_EQ(stories[0].track, 1);
  EXPECT_EQ(stories[0].explanation.verdict, CrossingVerdict::Counted);
  EXPECT_EQ(stories[0].crossings, 1U);
  EXPECT_EQ(stories[0].firstSeen, Stamp(0s));
  EXPECT_EQ(stories[0].lastSeen, Stamp(2s));
  EXPECT_EQ(stories[0].decidedFrom, Stamp(0s)) << "its last sighting clear on the other side";
  EXPECT_EQ(stories[0].decidedAt, Stamp(2s));
  EXPECT_EQ(stories[1].explanation.verdict, CrossingVerdict::NotOver);
  EXPECT_EQ(stories[2].firstSeen, Stamp(5s));
  ASSERT_EQ(history.sightings().size(), 3U);
  EXPECT_EQ(history.sightings()[1].beside->distance, 0.0);
  EXPECT_FALSE(history.sightings()[1].beside->isClear);
  EXPECT_TRUE(history.sightings()[2].beside->isClear);
}

TEST(LineHistory, KnowsTheLastStoryOfATrackAndAnEmptyOneOfOthers) {
  const LineHistory history = historyOf({{person(2, -2)}, {}, {}, {}, {person(2, -1)}}, 2);
  EXPECT_EQ(history.lastStoryOf(2).firstSeen, Stamp(4s));
  EXPECT_EQ(history.lastStoryOf(7).track, 7);
  EXPECT_EQ(history.lastStoryOf(7).explanation.verdict, TrackStory().explanation.verdict);
  EXPECT_EQ(history.lastStoryOf(-1).explanation.verdict, CrossingVerdict::NoIdentity);
}

TEST(LineHistory, ATrackThatWasFirstSeenOnTheLineSaysSo) {
  const LineHistory history = historyOf({{person(1, 0)}, {person(1, 2)}}, std::nullopt);
  EXPECT_EQ(history.stories()[0].explanation.verdict, CrossingVerdict::BeganOnLine);
  EXPECT_FALSE(history.stories()[0].decidedFrom);
  EXPECT_TRUE(history.sightings().empty());
}

TEST(LineHistory, WhatHasNoIdentityOrNoPlaceHasNoStory) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const LineHistory history = historyOf({{person(-1, 2), person(3, nan)}}, 3);
  EXPECT_TRUE(history.stories().empty());
  ASSERT_EQ(history.sightings().size(), 1U);
  EXPECT_FALSE(history.sightings()[0].beside);
}

TEST(Explanations, AsRecordsHaveEveryKey) {
  const LineHistory history = historyOf({{person(1, -2)}, {person(1, 2)}}, 1);
  EXPECT_EQ(toJson(recordOf("Door", history.stories()[0])),
            R"({"type":"trackExplanation","line":"Door","track":1,"class":"person","verdict":"counted",)"
            R"("crossings":1,"firstSeen":0,"lastSeen":1,"decidedFrom":0,"decidedAt":1,"side":"left"})");
  EXPECT_EQ(toJson(recordOf(history.sightings()[0])),
            R"({"type":"sighting","stamp":0,"side":"right","clear":true,"distance":-2,"x":5,"y":-2})");
  ZoneMoment nearby = moment(1s, 0, 0, 0.5);
  nearby.file = "a.pcd";
  EXPECT_EQ(
      toJson(recordOf(nearby)),
      R"({"type":"zoneExplanation","stamp":1,"file":"a.pcd","field":0,"fieldName":"","zone":0,"name":"",)"
      R"("points":0,"minPoints":0,"reached":false,"taken":0,"takenBy":[],"below":0,"above":0,)"
      R"("lowest":null,"highest":null,"nearest":0.5,"nearestX":0,"nearestY":0,"nearestZ":0,)"
      R"("state":"cleared","changesIn":null})");
}

TEST(Explanations, EveryVerdictHasItsWord) {
  const std::vector<std::pair<CrossingVerdict, std::string>> words = {
      {CrossingVerdict::NoSuchLine, "noSuchLine"},
      {CrossingVerdict::NoLength, "noLength"},
      {CrossingVerdict::NoIdentity, "noIdentity"},
      {CrossingVerdict::NotSeen, "notSeen"},
      {CrossingVerdict::NeverClear, "neverClear"},
      {CrossingVerdict::NotOver, "notOver"},
      {CrossingVerdict::OnLine, "onLine"},
      {CrossingVerdict::TurnedBack, "turnedBack"},
      {CrossingVerdict::PassedBeside, "passedBeside"},
      {CrossingVerdict::Jumped, "jumped"},
      {CrossingVerdict::Counted, "counted"},
      {CrossingVerdict::BeganOnLine, "beganOnLine"}};
  for (const auto& [verdict, word] : words) {
    EXPECT_EQ(verdictName(verdict), word);
  }
  EXPECT_EQ(verdictName(static_cast<CrossingVerdict>(99)), "");
}

TEST(HeightWatch, TellsAZoneInWhoseOutlineNearlyNothingIsBetweenItsHeights) {
  const auto watch = [](int between, int below) {
    Cloud cloud(static_cast<std::size_t>(between), {1, 1, 1});
    cloud.resize(static_cast<std::size_t>(between + below), {2, 2, -1.5});
    HeightWatch heights({{0, 0, "field", std::make_shared<Zone3dBase>(square())}});
    heights.add(viewOf(cloud));
    return heights.zones()[0];
  };
  EXPECT_FALSE(watch(0, 0).isSeen);
  EXPECT_FALSE(watch(0, 10).isNearlyUnseen()) << "no point is between the heights, which is said otherwise";
  EXPECT_TRUE(watch(1, 100).isNearlyUnseen());
  EXPECT_FALSE(watch(1, 99).isNearlyUnseen()) << "one in a hundred is enough";
  EXPECT_EQ(watch(1, 100).lowest, -1.5);
}

// The distances of three and four values are looked at by code of their own. One point far behind the others
// is not where another distance would look.
template <typename Real>
void expectSeenAtEveryDistance() {
  for (std::size_t values = 3; values <= 6; ++values) {
    for (const std::size_t at : {std::size_t{0}, std::size_t{1000}, std::size_t{2500}}) {
      std::vector<Real> records(values * 2501, Real{-50});
      std::fill_n(records.begin() + static_cast<std::ptrdiff_t>(values * at), 3, Real{1});
      HeightWatch heights({{0, 0, "field", std::make_shared<Zone3dBase>(square())}});
      heights.look(
          filter::classify::PointsView<Real>::interleaved(records.data(), values * sizeof(Real), 2501));
      EXPECT_TRUE(heights.zones()[0].isSeen) << values << " values, point " << at;
    }
  }
}

TEST(HeightWatch, SeesAPointAtEveryDistance) {
  expectSeenAtEveryDistance<float>();
  expectSeenAtEveryDistance<double>();
}

// Against the zones themselves: points and heights of all sizes, zones without a shape, and points that are
// not finite.
TEST(HeightWatch, CountsWhatTheOutlinesHold) {
  const double infinity = std::numeric_limits<double>::infinity();
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const auto disc = std::make_shared<filter::detection::Sector>("disc", 0.0, 0.0, 3.0);
  const auto slice = std::make_shared<filter::detection::Sector>("slice", -1.0, 1.0, 5.0);
  const std::vector<FieldZone> zones = {{0, 1, "f", std::make_shared<Zone3dBase>(square())},
                                        {0, 2, "f", std::make_shared<Zone3dBase>()},
                                        {5, 0, "g", std::make_shared<Zone3dBase>(disc, -1e6, 0.25)},
                                        {7, 2, "h", std::make_shared<Zone3dBase>(slice, 90.0, 80.0)}};
  Cloud cloud = {{nan, 1, 1}, {1, nan, 1},  {1, 1, nan}, {1, 1, infinity}, {1, 1, -infinity},
                 {1, 1, 1e9}, {1, 1, -1e9}, {0, 0, 0},   {4, 4, 0.5}};
  for (int i = 0; i < 1500; ++i) {
    cloud.push_back({0.37 * (i % 29) - 5, 0.41 * (i % 31) - 6, 0.013 * i - 9});
  }
  HeightWatch watch(zones);
  watch.add(viewOf(cloud));
  for (std::size_t k = 0; k < zones.size(); ++k) {
    const ZoneReach reach = reachOf(*zones[k].volume, viewOf(cloud));
    const HeightWatch::ZoneHeights& heights = watch.zones()[k];
    EXPECT_EQ(heights.inside, reach.insideOutline()) << k;
    EXPECT_EQ(heights.between, reach.between) << k;
    EXPECT_EQ(heights.lowest, reach.lowest.value_or(infinity)) << k;
    EXPECT_EQ(heights.highest, reach.highest.value_or(-infinity)) << k;
    const bool isSeen = std::any_of(cloud.begin(), cloud.end(), [&](const auto& p) {
      return std::isfinite(p[0] + p[1]) && std::isfinite(p[2]) && p[2] >= zones[k].volume->getZMin() &&
             p[2] <= zones[k].volume->getZMax();
    });
    EXPECT_EQ(heights.isSeen, isSeen) << k;
  }
  EXPECT_FALSE(watch.zones()[3].isSeen);
  EXPECT_GT(watch.zones()[0].inside, 100U);
}

}  // namespace
}  // namespace orvantis::toolkit
