#include <cmath>
#include <limits>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <filter/detection/CounterLines.h>
#include <filter/monitor/LineCounter.h>

#include "Frames.h"

namespace orvantis::filter::monitor::testing {
namespace {

using detection::CounterLine;
using Side = detection::CounterLineDirectionType;
using Verdict = CrossingVerdict;

constexpr std::int32_t walker = 7;

// The segment from (0, 0) to (10, 0): left of it is up. A box of 2 by 1 is clear of it when its centre is
// more than 0.5 off.
LineCounter counterOnXAxis(const LineCounterOptions& options = {}) {
  return LineCounter(oneLine({0.0, 0.0}, {10.0, 0.0}), options);
}

// One object seen at these places, 100 ms apart from 0 ms on.
std::vector<Crossing> walk(LineCounter& counter, const std::vector<PlanarPoint>& places) {
  std::vector<Crossing> crossings;
  for (std::size_t i = 0; i < places.size(); ++i) {
    const auto found = counter.update(ms(100 * static_cast<std::int64_t>(i)),
                                      {box(walker, places[i].x(), places[i].y(), "car")});
    crossings.insert(crossings.end(), found.begin(), found.end());
  }
  return crossings;
}

std::vector<PlanarPoint> upAndDownAt(double x, const std::vector<double>& heights) {
  std::vector<PlanarPoint> places;
  for (const double y : heights) {
    places.emplace_back(x, y);
  }
  return places;
}

struct Walked {
  std::vector<Crossing> crossings;
  Verdict verdict;
};

Walked walkOnXAxis(const std::vector<PlanarPoint>& places) {
  LineCounter counter = counterOnXAxis();
  auto crossings = walk(counter, places);
  return {crossings, counter.explain("L", walker).verdict};
}

TEST(LineCrossings, ReportLineDirectionTrackClassAndInstant) {
  LineCounter counter = counterOnXAxis();
  const auto crossings = walk(counter, upAndDownAt(4.0, {-3, -1, 0.25, 1}));
  ASSERT_EQ(crossings.size(), 1U);
  const Crossing& crossing = crossings[0];
  EXPECT_EQ(crossing.line, "L");
  EXPECT_EQ(crossing.from, Side::RIGHT);
  EXPECT_EQ(crossing.to, Side::LEFT);
  EXPECT_EQ(crossing.id, walker);
  EXPECT_EQ(crossing.className, "car");
  // From -1 at 100 ms to 0.25 at 200 ms: four fifths of the way.
  EXPECT_EQ(crossing.met, ms(180));
  EXPECT_EQ(crossing.where.x(), 4.0);
  EXPECT_NEAR(crossing.where.y(), 0.0, 1e-15);
  EXPECT_EQ(crossing.accepted, ms(300));
}

TEST(LineCrossings, TheOtherWayIsTheOtherDirection) {
  const auto crossings = walkOnXAxis(upAndDownAt(4.0, {2, -2})).crossings;
  ASSERT_EQ(crossings.size(), 1U);
  EXPECT_EQ(crossings[0].from, Side::LEFT);
  EXPECT_EQ(crossings[0].to, Side::RIGHT);
  EXPECT_EQ(crossings[0].met, ms(50));
}

TEST(LineCrossings, SwappingTheLinesPointsSwapsTheDirection) {
  LineCounter counter(oneLine({10.0, 0.0}, {0.0, 0.0}));
  const auto crossings = walk(counter, upAndDownAt(4.0, {2, -2}));
  ASSERT_EQ(crossings.size(), 1U);
  EXPECT_EQ(crossings[0].from, Side::RIGHT);
}

TEST(LineCrossings, WaitForTheObjectToBeClear) {
  EXPECT_TRUE(walkOnXAxis(upAndDownAt(4.0, {2, -0.4})).crossings.empty());
  EXPECT_TRUE(walkOnXAxis(upAndDownAt(4.0, {2, -0.5})).crossings.empty());  // still touches
  EXPECT_EQ(walkOnXAxis(upAndDownAt(4.0, {2, -0.4, -0.5, std::nextafter(-0.5, -1.0)})).crossings.size(), 1U);
}

TEST(LineCrossings, BeginOnlyWithAnObjectThatWasClear) {
  const Walked walked = walkOnXAxis(upAndDownAt(4.0, {0.3, -0.3, -2}));
  EXPECT_TRUE(walked.crossings.empty());
  EXPECT_EQ(walked.verdict, Verdict::BeganOnLine);
}

TEST(LineCrossings, TouchingAndGoingBackIsNone) {
  const Walked walked = walkOnXAxis(upAndDownAt(4.0, {2, 0.5, 2}));
  EXPECT_TRUE(walked.crossings.empty());
  EXPECT_EQ(walked.verdict, Verdict::TurnedBack);
}

TEST(LineCrossings, GoingAlmostOverAndBackIsNone) {
  const Walked walked = walkOnXAxis(upAndDownAt(4.0, {2, 0, -0.5, 0, 2}));
  EXPECT_TRUE(walked.crossings.empty());
  EXPECT_EQ(walked.verdict, Verdict::TurnedBack);
}

TEST(LineCrossings, JitterAboutTheLineIsNone) {
  std::vector<double> heights = {2};
  for (int i = 0; i < 50; ++i) {
    heights.push_back(i % 2 == 0 ? -0.45 : 0.45);
  }
  EXPECT_TRUE(walkOnXAxis(upAndDownAt(4.0, heights)).crossings.empty());
  // Over at last, it is one.
  heights.push_back(-2);
  EXPECT_EQ(walkOnXAxis(upAndDownAt(4.0, heights)).crossings.size(), 1U);
}

TEST(LineCrossings, StandingOnTheLineIsNone) {
  const Walked walked = walkOnXAxis(upAndDownAt(4.0, {2, 0, 0, 0, 0, 0}));
  EXPECT_TRUE(walked.crossings.empty());
  EXPECT_EQ(walked.verdict, Verdict::OnLine);
}

TEST(LineCrossings, AnObjectThatStoodOnTheLineCountsWhenItGoesOn) {
  EXPECT_EQ(walkOnXAxis(upAndDownAt(4.0, {2, 0, 0, 0, 0, 0, -2})).crossings.size(), 1U);
  EXPECT_EQ(walkOnXAxis(upAndDownAt(4.0, {-2, 0, 0, 0, 0, 0, 2})).crossings.size(), 1U);
}

TEST(LineCrossings, TheFastAreNotMissed) {
  const auto crossings = walkOnXAxis({{-300, 400}, {309, -400}}).crossings;
  ASSERT_EQ(crossings.size(), 1U);
  EXPECT_EQ(crossings[0].met, ms(50));
  EXPECT_EQ(crossings[0].where.x(), 4.5);
}

TEST(LineCrossings, BesideTheEndsThereIsNone) {
  for (const double x : {-0.25, -5.0, 10.25, 1e6}) {
    const Walked walked = walkOnXAxis(upAndDownAt(x, {2, -2}));
    EXPECT_TRUE(walked.crossings.empty()) << x;
    EXPECT_EQ(walked.verdict, Verdict::PassedBeside) << x;
  }
}

TEST(LineCrossings, BesideTheEndsTheReferencePointDecidesAndNotTheFootprint) {
  // The box reaches over the segment's end by 0.5, its centre does not.
  EXPECT_TRUE(walkOnXAxis(upAndDownAt(-0.5, {2, 0, -2})).crossings.empty());
  EXPECT_EQ(walkOnXAxis(upAndDownAt(0.5, {2, 0, -2})).crossings.size(), 1U);
}

TEST(LineCrossings, ThePathCountsAndNotTheSightings) {
  // Both sightings are beside the segment and the way between them is not, and the other way round.
  EXPECT_EQ(walkOnXAxis({{-4, 4}, {14, -4}}).crossings.size(), 1U);
  EXPECT_EQ(walkOnXAxis({{-4, 4}, {3, -4}}).crossings.size(), 0U);
  EXPECT_EQ(walkOnXAxis({{1, 8}, {-3, -8}}).crossings.size(), 0U);
}

TEST(LineCrossings, GoingRoundAnEndCountsOnlyTheWayOverTheSegment) {
  LineCounter counter = counterOnXAxis();
  std::vector<PlanarPoint> round;
  for (int lap = 0; lap < 3; ++lap) {
    round.insert(round.end(), {{4, 4}, {4, -4}, {-8, -4}, {-8, 4}});
  }
  EXPECT_EQ(walk(counter, round).size(), 3U);
  EXPECT_EQ(counter.tallies()[0].crossings.toRight, 3U);
  EXPECT_EQ(counter.tallies()[0].crossings.toLeft, 0U);
}

TEST(LineCrossings, OverTheSegmentAndBackBesideItWithoutGettingClearIsNone) {
  EXPECT_TRUE(walkOnXAxis({{2, 2}, {2, -0.25}, {-4, -0.25}, {-4, 0.25}, {-4, 2}}).crossings.empty());
}

TEST(LineCrossings, PassesBackAreTakenOff) {
  // Over, back over, then beside: it changed sides beside the line.
  const Walked walked = walkOnXAxis({{2, 2}, {2, -0.25}, {2, 0.25}, {-4, 0.25}, {-4, -0.25}, {-4, -2}});
  EXPECT_TRUE(walked.crossings.empty());
  EXPECT_EQ(walked.verdict, Verdict::PassedBeside);
  // Beside, back over the segment, and over it once more: in sum that is beside, too.
  EXPECT_TRUE(
      walkOnXAxis({{-4, 2}, {-4, -0.25}, {2, -0.25}, {2, 0.25}, {2, -0.25}, {2, -2}}).crossings.empty());
  // Over, back beside, and on beside: in sum that is over.
  EXPECT_EQ(
      walkOnXAxis({{2, 2}, {2, -0.25}, {-4, -0.25}, {-4, 0.25}, {-4, -0.25}, {-4, -2}}).crossings.size(), 1U);
  // Beside, back over, beside: in sum it went over the segment backwards, which does not count as a crossing
  // either way.
  EXPECT_TRUE(walkOnXAxis({{-4, 2}, {-4, -0.25}, {2, -0.25}, {2, 0.25}, {-4, 0.25}, {-4, -0.25}, {-4, -2}})
                  .crossings.empty());
}

TEST(LineCrossings, TheInstantIsThatOfTheLastPassTowardsTheNewSide) {
  const auto crossings = walkOnXAxis(upAndDownAt(4.0, {2, -0.25, 0.25, -0.25, -2})).crossings;
  ASSERT_EQ(crossings.size(), 1U);
  EXPECT_EQ(crossings[0].met, ms(250));
}

TEST(LineCrossings, EachRealCrossingCountsOnceInItsDirection) {
  LineCounter counter = counterOnXAxis();
  EXPECT_EQ(walk(counter, upAndDownAt(4.0, {2, 0.2, -0.2, -2, -3, -2, 0, 2, 3, 2, -2})).size(), 3U);
  EXPECT_EQ(counter.tallies()[0].crossings.toRight, 2U);
  EXPECT_EQ(counter.tallies()[0].crossings.toLeft, 1U);
  EXPECT_EQ(counter.tallies()[0].ids.right, (std::set<std::int32_t>{walker}));
  EXPECT_EQ(counter.tallies()[0].ids.left, (std::set<std::int32_t>{walker}));
}

TEST(LineCrossings, DependOnTheFirstAndLastClearSightings) {
  EXPECT_EQ(walkOnXAxis(upAndDownAt(4.0, {2, 0.2, -2})).crossings.size(), 1U);
  EXPECT_EQ(walkOnXAxis(upAndDownAt(4.0, {0.2, -2})).crossings.size(), 0U);  // without the first
  EXPECT_EQ(walkOnXAxis(upAndDownAt(4.0, {2, 0.2})).crossings.size(), 0U);   // without the last
}

TEST(LineCrossings, AreTheSameAtALowerRateThatLeavesClearSightingsOnEachSide) {
  // A drive over the line, back over it on a slant, and past its end.
  std::vector<PlanarPoint> drive;
  for (int i = 0; i <= 64; ++i) {
    drive.emplace_back(4.0, 8.0 - 0.25 * i);
  }
  for (int i = 1; i <= 64; ++i) {
    drive.emplace_back(4.0 + 0.125 * i, -8.0 + 0.25 * i);
  }
  for (int i = 1; i <= 64; ++i) {
    drive.emplace_back(12.0, 8.0 - 0.25 * i);
  }
  for (const std::size_t every : {1U, 2U, 4U, 8U}) {
    LineCounter counter = counterOnXAxis();
    std::vector<Crossing> crossings;
    for (std::size_t i = 0; i < drive.size(); i += every) {
      const auto found =
          counter.update(ms(100 * static_cast<std::int64_t>(i)), {box(walker, drive[i].x(), drive[i].y())});
      crossings.insert(crossings.end(), found.begin(), found.end());
    }
    ASSERT_EQ(crossings.size(), 2U) << "every " << every;
    EXPECT_EQ(crossings[0].to, Side::RIGHT);
    EXPECT_EQ(crossings[0].met, ms(3200));
    EXPECT_EQ(crossings[1].to, Side::LEFT);
    EXPECT_EQ(crossings[1].met, ms(9600));
    EXPECT_EQ(crossings[1].where.x(), 8.0);
  }
}

TEST(LineCrossings, TheInstantIsInterpolatedBetweenUnevenStamps) {
  LineCounter counter = counterOnXAxis();
  counter.update(ms(1000), {box(walker, 4, 3)});
  const auto crossings = counter.update(ms(1400), {box(walker, 4, -1)});
  ASSERT_EQ(crossings.size(), 1U);
  EXPECT_EQ(crossings[0].met, ms(1300));
}

TEST(LineTracks, ThatVanishAndReturnInTimeCount) {
  LineCounter counter = counterOnXAxis({ms(500)});
  counter.update(ms(0), {box(walker, 4, 2)});
  counter.update(ms(200), {});
  const auto crossings = counter.update(ms(500) - Duration(1), {box(walker, 4, -2)});
  EXPECT_EQ(crossings.size(), 1U);
}

TEST(LineTracks, ThatReturnTooLateBeginAnew) {
  LineCounter counter = counterOnXAxis({ms(500)});
  counter.update(ms(0), {box(walker, 4, 2)});
  EXPECT_TRUE(counter.update(ms(500), {box(walker, 4, -2)}).empty());
  EXPECT_EQ(counter.explain("L", walker).verdict, Verdict::NotOver);
  EXPECT_EQ(counter.update(ms(600), {box(walker, 4, 2)}).size(), 1U);
}

TEST(LineTracks, AreForgottenWithTheirIdsButNotTheirNumbers) {
  LineCounter counter = counterOnXAxis({ms(500)});
  counter.update(ms(0), {box(walker, 4, 2, "car")});
  counter.update(ms(100), {box(walker, 4, -2, "car")});
  counter.update(ms(599), {});
  EXPECT_EQ(counter.numTracks(), 1U);
  EXPECT_EQ(counter.tallies()[0].ids.right.size(), 1U);
  counter.update(ms(600), {});
  EXPECT_EQ(counter.numTracks(), 0U);
  EXPECT_TRUE(counter.tallies()[0].ids.right.empty());
  EXPECT_EQ(counter.tallies()[0].crossings.toRight, 1U);
  EXPECT_EQ(counter.tallies()[0].byClass.at("car").toRight, 1U);
  EXPECT_EQ(counter.explain("L", walker).verdict, Verdict::NotSeen);
  EXPECT_TRUE(counter.directions("L").sides.empty());
}

TEST(LineTracks, AreForgottenWhenTimePassesWithoutFrames) {
  LineCounter counter = counterOnXAxis({ms(500)});
  counter.update(ms(0), {box(walker, 4, 2), box(8, 6, 2)});
  counter.update(ms(100), {box(walker, 4, -2)});
  counter.advance(ms(499));
  EXPECT_EQ(counter.numTracks(), 2U);
  counter.advance(ms(500));
  EXPECT_EQ(counter.numTracks(), 1U);
  EXPECT_EQ(counter.explain("L", 8).verdict, Verdict::NotSeen);
  EXPECT_EQ(counter.tallies()[0].ids.right.size(), 1U);
  counter.advance(ms(600));
  EXPECT_EQ(counter.numTracks(), 0U);
  EXPECT_TRUE(counter.tallies()[0].ids.right.empty());
  EXPECT_EQ(counter.tallies()[0].crossings.toRight, 1U);
}

TEST(LineTracks, ThatReturnInAFrameOfTheTimeThatPassedCountAsWithoutIt) {
  LineCounter counter = counterOnXAxis({ms(500)});
  counter.update(ms(0), {box(walker, 4, 2)});
  counter.advance(ms(499));
  EXPECT_EQ(counter.update(ms(499), {box(walker, 4, -2)}).size(), 1U);
  counter.advance(ms(999));
  EXPECT_TRUE(counter.update(ms(999), {box(walker, 4, 2)}).empty());
  EXPECT_EQ(counter.explain("L", walker).verdict, Verdict::NotOver);
}

TEST(LineTracks, OfAnHourLeaveNothingBehind) {
  LineCounter counter = counterOnXAxis();
  for (int i = 0; i < 36'000; ++i) {
    // A new track on every frame, each seen twice, on one side and on the other.
    counter.update(ms(100 * i), {box(i, 4, 2, "car"), box(i + 1, 4, -2, "car")});
    ASSERT_LE(counter.numTracks(), 21U);
    ASSERT_LE(counter.tallies()[0].ids.left.size(), 21U);
  }
  EXPECT_EQ(counter.tallies()[0].crossings.toLeft, 35'999U);
  EXPECT_EQ(counter.tallies()[0].byClass.size(), 1U);
}

TEST(LineTracks, ThatSwapIdsCrossTheLineUnlessThatIsTooFast) {
  const std::vector<TrackedObject> before = {box(1, 4, 20), box(2, 4, -20)};
  const std::vector<TrackedObject> swapped = {box(2, 4, 20), box(1, 4, -20)};
  LineCounter trusting = counterOnXAxis();
  trusting.update(ms(0), before);
  EXPECT_EQ(trusting.update(ms(100), swapped).size(), 2U);

  LineCounterOptions options;
  options.maxSpeed = 50.0;
  LineCounter wary = counterOnXAxis(options);
  wary.update(ms(0), before);
  EXPECT_TRUE(wary.update(ms(100), swapped).empty());
  EXPECT_EQ(wary.explain("L", 1).verdict, Verdict::Jumped);
  EXPECT_EQ(wary.explain("L", 1).side, Side::RIGHT);
  // Both go on as new objects.
  EXPECT_EQ(wary.update(ms(1000), {box(1, 4, 20)}).size(), 1U);
}

TEST(LineTracks, AtTheMaximumSpeedStillMove) {
  LineCounterOptions options;
  options.maxSpeed = 40.0;
  LineCounter counter = counterOnXAxis(options);
  counter.update(ms(0), {box(1, 4, 20)});
  EXPECT_EQ(counter.update(ms(1000), {box(1, 4, -20)}).size(), 1U);
  EXPECT_TRUE(counter.update(ms(2000) - Duration(1), {box(1, 4, 20)}).empty());
}

TEST(LineTracks, WithoutIdentityNeverCount) {
  LineCounter counter = counterOnXAxis();
  for (const std::int32_t id : {-1, -7, std::numeric_limits<std::int32_t>::min()}) {
    const std::int64_t start = counter.numTracks() == 0 ? -1000LL * id : 0;
    counter.update(ms(start), {box(id, 4, 2), box(id, 6, 2)});
    EXPECT_TRUE(counter.update(ms(start + 100), {box(id, 4, -2), box(id, 6, -2)}).empty());
    EXPECT_EQ(counter.explain("L", id).verdict, Verdict::NoIdentity);
  }
  EXPECT_EQ(counter.numTracks(), 0U);
  EXPECT_EQ(counter.tallies()[0].crossings.toRight, 0U);
}

TEST(LineTracks, OfIdZeroAndTheLargestCount) {
  LineCounter counter = counterOnXAxis();
  constexpr std::int32_t largest = std::numeric_limits<std::int32_t>::max();
  counter.update(ms(0), {box(0, 4, 2), box(largest, 6, 2)});
  EXPECT_EQ(counter.update(ms(100), {box(0, 4, -2), box(largest, 6, -2)}).size(), 2U);
}

TEST(LineTracks, ThatCannotBePlacedCountAsNotSeen) {
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  LineCounter counter = counterOnXAxis({ms(500)});
  counter.update(ms(0), {box(walker, 4, 2)});
  counter.update(ms(100), {box(walker, nan, 0)});
  counter.update(ms(200), {{walker, core::State(PlanarPolygon()), 0, 1, ""}});
  EXPECT_EQ(counter.explain("L", walker).verdict, Verdict::NotOver);
  EXPECT_EQ(counter.update(ms(400), {box(walker, 4, -2)}).size(), 1U);
  counter.update(ms(900), {box(walker, nan, 0)});
  EXPECT_EQ(counter.numTracks(), 0U);
}

TEST(LineTracks, OfTwoObjectsWithOneIdAreRefused) {
  LineCounter counter = counterOnXAxis();
  counter.update(ms(0), {box(5, 4, 2)});
  try {
    counter.update(ms(100), {box(5, 4, -2), box(6, 1, 1), box(5, 4, 2)});
    ADD_FAILURE() << "not refused";
  } catch (const std::invalid_argument& error) {
    EXPECT_STREQ(error.what(), "Two objects of one frame have the id 5");
  }
  EXPECT_THROW(counter.update(ms(100), {box(0, 4, -2), box(0, 4, 2)}), std::invalid_argument);
  // Nothing was changed: the same stamp is still open.
  EXPECT_EQ(counter.numTracks(), 1U);
  EXPECT_EQ(counter.update(ms(100), {box(5, 4, -2)}).size(), 1U);
}

TEST(LineTallies, CountPerClassAsSeenAtTheCrossing) {
  LineCounter counter = counterOnXAxis();
  counter.update(ms(0), {box(1, 2, 2, "car"), box(2, 4, 2, "car"), box(3, 6, -2, ""), box(4, 8, 2, "?")});
  counter.update(ms(100),
                 {box(1, 2, -2, "car"), box(2, 4, -2, "car"), box(3, 6, 2, ""), box(4, 8, -2, "van")});
  const LineTally& tally = counter.tallies()[0];
  EXPECT_EQ(tally.line, "L");
  EXPECT_EQ(tally.crossings.toRight, 3U);
  EXPECT_EQ(tally.crossings.toLeft, 1U);
  ASSERT_EQ(tally.byClass.size(), 3U);
  EXPECT_EQ(tally.byClass.at("car").toRight, 2U);
  EXPECT_EQ(tally.byClass.at("van").toRight, 1U);
  EXPECT_EQ(tally.byClass.at("").toLeft, 1U);
  EXPECT_EQ(tally.ids.right, (std::set<std::int32_t>{1, 2, 4}));
  EXPECT_EQ(tally.ids.left, (std::set<std::int32_t>{3}));
}

TEST(LineTallies, AreOnePerLineInTheOrderOfTheNames) {
  detection::CounterLines lines;
  lines.insert(CounterLine("b", {0, 0}, {10, 0}, nullptr, Side::LEFT));
  lines.insert(CounterLine("a", {0, 5}, {10, 5}, nullptr, Side::LEFT));
  LineCounter counter(lines.clone());
  counter.update(ms(0), {box(1, 4, 8)});
  const auto crossings = counter.update(ms(100), {box(1, 4, -2)});
  ASSERT_EQ(crossings.size(), 2U);
  EXPECT_EQ(crossings[0].line, "a");
  EXPECT_EQ(crossings[0].met, ms(30));
  EXPECT_EQ(crossings[1].line, "b");
  EXPECT_EQ(crossings[1].met, ms(80));
  EXPECT_EQ(counter.tallies()[0].line, "a");
  EXPECT_EQ(counter.tallies()[1].line, "b");
  EXPECT_EQ(counter.tallies()[1].crossings.toRight, 1U);
}

TEST(LineTallies, ResetKeepsTheTracks) {
  LineCounter counter = counterOnXAxis();
  walk(counter, upAndDownAt(4.0, {2, -2}));
  counter.resetTallies();
  EXPECT_EQ(counter.tallies()[0].line, "L");
  EXPECT_EQ(counter.tallies()[0].crossings.toRight, 0U);
  EXPECT_TRUE(counter.tallies()[0].byClass.empty());
  EXPECT_TRUE(counter.tallies()[0].ids.right.empty());
  EXPECT_EQ(counter.update(ms(500), {box(walker, 4, 2)}).size(), 1U);
}

TEST(LineTallies, TheRecordsTellTheSideOfEachTrackAndWhoIsOnTheLine) {
  LineCounter counter = counterOnXAxis();
  counter.update(ms(0), {box(1, 2, 2), box(2, 4, -2), box(3, 6, 2), box(4, 8, 0)});
  counter.update(ms(100), {box(1, 2, 2), box(2, 4, -0.2), box(3, 6, -0.2), box(4, 8, 0)});
  EXPECT_EQ(counter.directions("L").sides,
            (std::map<std::int32_t, Side>{{1, Side::LEFT}, {2, Side::RIGHT}, {3, Side::LEFT}}));
  const auto onLine = counter.onLine("L");
  ASSERT_EQ(onLine.size(), 2U);
  EXPECT_EQ(onLine[0].id, 2);
  EXPECT_EQ(onLine[0].side, Side::RIGHT);
  EXPECT_EQ(onLine[1].id, 3);
  EXPECT_EQ(onLine[1].side, Side::LEFT);
  EXPECT_TRUE(counter.directions("M").sides.empty());
  EXPECT_TRUE(counter.onLine("M").empty());
}

TEST(LineClearance, KeepsPointsThatJitterFromCounting) {
  const auto point = [](double y) {
    return TrackedObject{walker, core::State(4.0, y, 0.0, 0.0, 0.0), 0.0, 1.0, ""};
  };
  LineCounterOptions options;
  options.clearance = 0.5;
  LineCounter counter = counterOnXAxis(options);
  std::int64_t frame = 0;
  const auto crossingsAt = [&](double y) { return counter.update(ms(100 * frame++), {point(y)}).size(); };
  EXPECT_EQ(crossingsAt(0.5), 0U);
  for (const double y : {0.1, -0.1, 0.2, -0.49, 0.3, -0.3}) {
    EXPECT_EQ(crossingsAt(y), 0U) << y;
  }
  EXPECT_EQ(crossingsAt(-0.5), 1U);
}

TEST(LineExplanations, NameWhyThereIsNoCrossing) {
  LineCounter counter = counterOnXAxis();
  const auto verdict = [&] { return counter.explain("L", walker).verdict; };
  std::int64_t frame = 0;
  const auto seeAt = [&](double x, double y) { counter.update(ms(100 * frame++), {box(walker, x, y)}); };
  EXPECT_EQ(verdict(), Verdict::NotSeen);
  seeAt(4, 0);
  EXPECT_EQ(verdict(), Verdict::NeverClear);
  EXPECT_EQ(counter.explain("L", walker).side, std::nullopt);
  seeAt(4, 2);
  EXPECT_EQ(verdict(), Verdict::BeganOnLine);
  EXPECT_EQ(counter.explain("L", walker).side, Side::LEFT);
  seeAt(4, 3);
  EXPECT_EQ(verdict(), Verdict::BeganOnLine);
  seeAt(4, 0);
  EXPECT_EQ(verdict(), Verdict::OnLine);
  EXPECT_EQ(counter.explain("L", walker).side, Side::LEFT);
  seeAt(4, 2);
  EXPECT_EQ(verdict(), Verdict::TurnedBack);
  seeAt(14, 2);
  seeAt(14, -2);
  EXPECT_EQ(verdict(), Verdict::PassedBeside);
  EXPECT_EQ(counter.explain("L", walker).lastCrossing, std::nullopt);
  seeAt(4, -2);
  EXPECT_EQ(verdict(), Verdict::PassedBeside);
  seeAt(4, 2);
  EXPECT_EQ(verdict(), Verdict::Counted);
  seeAt(4, 3);
  EXPECT_EQ(verdict(), Verdict::Counted);
  const auto explanation = counter.explain("L", walker);
  ASSERT_TRUE(explanation.lastCrossing.has_value());
  EXPECT_EQ(explanation.lastCrossing->met, ms(750));
  EXPECT_EQ(explanation.lastCrossing->to, Side::LEFT);
  EXPECT_EQ(counter.explain("M", walker).verdict, Verdict::NoSuchLine);
}

TEST(LineExplanations, TellATrackThatStayedClearFromOneThatBeganOrEndedOnTheLine) {
  EXPECT_EQ(walkOnXAxis(upAndDownAt(4.0, {2, 3, 2})).verdict, Verdict::NotOver);
  EXPECT_EQ(walkOnXAxis(upAndDownAt(4.0, {0, 2, 3})).verdict, Verdict::BeganOnLine);
  EXPECT_EQ(walkOnXAxis(upAndDownAt(4.0, {3, 2, 0})).verdict, Verdict::OnLine);
  EXPECT_EQ(walkOnXAxis(upAndDownAt(4.0, {0, 2, 0})).verdict, Verdict::OnLine);
  EXPECT_EQ(walkOnXAxis(upAndDownAt(4.0, {0, 2, 0, 2})).verdict, Verdict::TurnedBack);
  EXPECT_EQ(walkOnXAxis(upAndDownAt(4.0, {0, 0})).verdict, Verdict::NeverClear);
  EXPECT_EQ(walkOnXAxis(upAndDownAt(4.0, {0, 2, -2})).verdict, Verdict::Counted);
}

TEST(LineExplanations, EachHasItsOwnText) {
  EXPECT_STREQ(describe(Verdict::NoSuchLine), "there is no line of that name");
  EXPECT_STREQ(describe(Verdict::NoLength),
               "the line's ends are the same point or not finite, so it has no sides");
  EXPECT_STREQ(describe(Verdict::NoIdentity), "an id below zero is not an identity");
  EXPECT_STREQ(describe(Verdict::NotSeen), "was not seen, or is forgotten");
  EXPECT_STREQ(describe(Verdict::NeverClear), "has not been clear of the line yet");
  EXPECT_STREQ(describe(Verdict::NotOver), "has stayed clear of the line on one side");
  EXPECT_STREQ(describe(Verdict::OnLine), "is not clear of the line now");
  EXPECT_STREQ(describe(Verdict::TurnedBack), "came to the line and turned back");
  EXPECT_STREQ(describe(Verdict::PassedBeside), "changed sides beside the line's ends");
  EXPECT_STREQ(describe(Verdict::Jumped),
               "was faster than the maximum speed, so it was taken for another object");
  EXPECT_STREQ(describe(Verdict::Counted), "went over the line");
  EXPECT_STREQ(describe(Verdict::BeganOnLine),
               "was not clear of the line when it was first seen, and has been clear on one side since");
  EXPECT_STREQ(describe(static_cast<Verdict>(99)), "");
}

TEST(LineCounterStamps, OnesThatStandStillOrRunBackwardsAreRefusedWithBothNamed) {
  LineCounter counter = counterOnXAxis();
  counter.update(ms(5), {box(walker, 4, 2)});
  for (const Stamp refused : {ms(5), ms(-3)}) {
    try {
      counter.update(refused, {box(walker, 4, -2)});
      ADD_FAILURE() << refused.count();
    } catch (const std::invalid_argument& error) {
      EXPECT_EQ(error.what(), "The stamp " + std::to_string(refused.count()) +
                                  " ns is not later than the last one, 5000000 ns");
    }
  }
  EXPECT_EQ(counter.update(ms(6), {box(walker, 4, -2)}).size(), 1U);
}

TEST(LineCounterStamps, TimePassesForwardsOnly) {
  LineCounter counter = counterOnXAxis();
  counter.advance(ms(3));
  counter.advance(ms(3));
  counter.update(ms(3), {box(walker, 4, 2)});
  counter.advance(ms(3));
  counter.advance(ms(5));
  const auto refusal = [](const auto& act) -> std::string {
    try {
      act();
    } catch (const std::invalid_argument& error) {
      return error.what();
    }
    return "not refused";
  };
  EXPECT_EQ(refusal([&] { counter.advance(ms(4)); }),
            "The stamp 4000000 ns is earlier than the last one, 5000000 ns");
  EXPECT_EQ(refusal([&] { counter.update(ms(4), {}); }),
            "The stamp 4000000 ns is earlier than the last one, 5000000 ns");
  EXPECT_EQ(refusal([&] { counter.update(ms(3), {}); }),
            "The stamp 3000000 ns is not later than the last one, 3000000 ns");
  EXPECT_EQ(counter.update(ms(5), {box(walker, 4, -2)}).size(), 1U);
  EXPECT_EQ(refusal([&] { counter.advance(ms(4)); }),
            "The stamp 4000000 ns is earlier than the last one, 5000000 ns");
}

TEST(LineCounterStamps, TheFarthestStampsAreNoTrouble) {
  LineCounter counter = counterOnXAxis({Duration::max()});
  counter.update(Stamp::min(), {box(walker, 4, 2)});
  // Longer than the longest duration, so forgotten.
  EXPECT_TRUE(counter.update(Stamp::max(), {box(walker, 4, -2)}).empty());

  // So late on its way that the share of it rounds to the whole, and the whole to more than a stamp holds.
  const auto point = [](double y) {
    return TrackedObject{walker, core::State(4.0, y, 0.0, 0.0, 0.0), 0.0, 1.0, ""};
  };
  LineCounter other = counterOnXAxis({Duration::max()});
  other.update(Stamp(1), {point(2.0)});
  const auto crossings = other.update(Stamp::max(), {point(-0x1p-60)});
  ASSERT_EQ(crossings.size(), 1U);
  EXPECT_EQ(crossings[0].met, Stamp::max());
}

TEST(LineCounterOptionsTest, OutsideTheirRangesAreRefused) {
  const auto refused = [](const LineCounterOptions& options) {
    EXPECT_THROW(counterOnXAxis(options), std::invalid_argument);
  };
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  constexpr double inf = std::numeric_limits<double>::infinity();
  refused({ms(0)});
  refused({ms(-1)});
  for (const double clearance : {-0.1, nan, inf}) {
    refused({ms(1), clearance});
  }
  for (const double maxSpeed : {0.0, -1.0, nan}) {
    refused({ms(1), 0.0, maxSpeed});
  }
}

}  // namespace
}  // namespace orvantis::filter::monitor::testing
