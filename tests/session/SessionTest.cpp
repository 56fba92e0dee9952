#include <chrono>
#include <optional>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include <gtest/gtest.h>

#include "document/Check.h"
#include "session/EventText.h"
#include "session/Session.h"
#include "session/SessionPlot.h"
#include "session/SessionSummary.h"
#include "session/SessionTables.h"

namespace orvantis::toolkit {
namespace {

using filter::monitor::Duration;
using filter::monitor::Stamp;
using filter::monitor::TrackedObject;
using namespace std::chrono_literals;

// A box from (0, 0) to (10, 10) and a line along y = 5 through it.
const std::string site = R"({"ZoneDetector":{"sensitivity":10,"EvaluationField":[
    {"name":"Yard","index":0,"Zone":[{"name":"Box","index":0,"zMin":0,"zMax":2,
      "shape":"rectangle","Rectangle":{"rotation":0,"Point":[{"x":0,"y":0},{"x":10,"y":10}]}}]},
    {"name":"Gate","index":3,"Zone":[{"name":"Disc","index":2,"zMin":0,"zMax":2,
      "shape":"sector","Sector":{"minAngle":0,"maxAngle":0,"radius":1}}]}]},
    "CounterLines":{"CounterLine":[{"name":"Door","first":{"x":0,"y":5},"second":{"x":10,"y":5}}]}})";

TrackedObject person(std::int32_t id, double x, double y) {
  return {id, core::State(x, y, 0.5, 0.5, 0.0), 0.0, 1.8, "person"};
}

std::vector<std::string> linesOf(const SessionFrame& frame) {
  std::vector<std::string> lines;
  for (const Event& event : frame.events) {
    lines.push_back(toLine(frame.stamp, event));
  }
  return lines;
}

using Lines = std::vector<std::string>;
const Points noPoints = filter::classify::PointsView<float>();

TEST(Session, WhoIsOutOfSightIsLostInTimeWhilePointsGoOn) {
  Session session(check(site).configuration.value());
  SessionSummary summary;
  const std::vector<TrackedObject> seen = {person(7, 5.0, 5.0)};
  summary.add(session.take(0s, std::nullopt, &seen));
  summary.add(session.take(1900ms, noPoints, nullptr));
  const SessionFrame frame = session.take(2s, noPoints, nullptr);
  summary.add(frame);
  EXPECT_EQ(linesOf(frame),
            Lines{R"(     2.000 s  person 7 lost in zone 0/0 "Box" after 0.000 s, last seen at 0.000 s)"});
  const FieldZone box = zonesOf(check(site).configuration.value().detector)[0];
  EXPECT_EQ(summary.of(box, session.objects()).visits, 1U);
  EXPECT_EQ(summary.of(box, session.objects()).longestDwell, Duration(0));
}

// Another sensitivity or debounce time needs no points, only their counts.
TEST(Session, FramesThatWereCountedBeforeTellTheSame) {
  const std::vector<float> room(15 * 3, 1.0F);
  const Points points = filter::classify::PointsView<float>::interleaved(room.data(), 12, 15);
  const Configuration configuration = check(site).configuration.value();
  Session first(configuration);
  Session second(configuration);
  const std::vector<TrackedObject> seen = {person(7, 5.0, 5.0)};
  for (const auto* objects : {&seen, static_cast<const std::vector<TrackedObject>*>(nullptr)}) {
    const Stamp stamp = objects != nullptr ? 1s : 5s;
    const SessionFrame wanted = first.take(stamp, points, objects);
    const CountedPoints counts{{wanted.points->counts, wanted.points->excluded, wanted.points->noReturns},
                               15};
    const SessionFrame found = second.take(stamp, counts, objects);
    EXPECT_EQ(found.pointCount, 15U);
    EXPECT_EQ(linesOf(found), linesOf(wanted));
    EXPECT_FALSE(found.events.empty());
  }
}

TEST(Session, AFrameOfObjectsAtTheSameStampLosesOnlyOnce) {
  Session session(check(site).configuration.value());
  const std::vector<TrackedObject> seen = {person(7, 5.0, 5.0)};
  session.take(0s, std::nullopt, &seen);
  const std::vector<TrackedObject> none;
  EXPECT_EQ(session.take(2s, noPoints, &none).events.size(), 2U);  // outputs, lost
  EXPECT_EQ(session.take(3s, noPoints, nullptr).events.size(), 0U);
}

TEST(Session, ForgetsAfterTheGivenTime) {
  SessionOptions options;
  options.forgetAfter = 500ms;
  Session session(check(site).configuration.value(), options);
  const std::vector<TrackedObject> seen = {person(7, 5.0, 5.0)};
  session.take(0s, std::nullopt, &seen);
  EXPECT_EQ(session.take(500ms, noPoints, nullptr).lost.size(), 1U);
  EXPECT_EQ(session.lines().explain("Door", 7).verdict, filter::monitor::CrossingVerdict::NotSeen);
}

TEST(Session, TakesTheClearanceAndTheLargestSpeed) {
  const std::vector<TrackedObject> before = {person(7, 5.0, 4.0)};
  const std::vector<TrackedObject> after = {person(7, 5.0, 6.0)};
  const auto crossings = [&](const SessionOptions& options) {
    Session session(check(site).configuration.value(), options);
    session.take(0s, std::nullopt, &before);
    return session.take(1s, std::nullopt, &after).events.size();
  };
  SessionOptions options;
  EXPECT_EQ(crossings(options), 1U);
  options.lines.clearance = 0.8;  // the boxes reach to 0.75 m off the line
  EXPECT_EQ(crossings(options), 0U);
  options.lines.clearance = 0.75;
  EXPECT_EQ(crossings(options), 1U);
  options.lines.maxSpeed = 1.9;
  EXPECT_EQ(crossings(options), 0U);
}

TEST(Session, TheActiveFieldDrivesTheOutputs) {
  const std::vector<float> point = {0.5F, 0.1F, 1.0F};
  const Points points = filter::classify::PointsView<float>::interleaved(point.data(), 12, 1);
  SessionOptions options;
  options.activeField = 3;
  Session session(check(site).configuration.value(), options);
  const SessionFrame frame = session.take(0s, points, nullptr);
  EXPECT_EQ(linesOf(frame).back(), "     0.000 s  outputs of field 3: low low high");
  options.activeField = 8;
  EXPECT_THROW(Session(check(site).configuration.value(), options), std::out_of_range);
}

TEST(Session, AFrameOfDoublesIsCountedAsOneOfFloats) {
  const std::vector<double> point = {5.0, 5.0, 1.0};
  Session session(check(site).configuration.value());
  const SessionFrame frame =
      session.take(0s, filter::classify::PointsView<double>::interleaved(point.data(), 24, 1), nullptr);
  EXPECT_EQ(frame.pointCount, 1U);
  EXPECT_EQ(frame.points->counts[0], 1U);
}

TEST(Events, AreWrittenWithEveryNanosecond) {
  const filter::monitor::ZoneEvent event{{0, 1, "f", "z"}, true, Stamp(1'700'000'000'000'000'001), Stamp(0)};
  const Stamp stamp(1'700'000'000'200'000'003);
  EXPECT_EQ(toJson(recordOf(stamp, event)),
            R"({"type":"zone","stamp":1700000000.200000003,"event":"occupied","field":0,"fieldName":"f",)"
            R"("zone":1,"name":"z","began":1700000000.000000001})");
  EXPECT_EQ(toRow(recordOf(stamp, event), eventColumns()),
            "1700000000.200000003,zone,occupied,0,1,z,,,,1700000000.000000001,,,,\n");
}

TEST(Events, ATrackWithoutClassIsCalledATrack) {
  const filter::monitor::ObjectEvent event{
      filter::monitor::ObjectEvent::Kind::Entered, {0, 1, "f", "z"}, 5, "", Stamp(0), Duration(0)};
  EXPECT_EQ(toLine(Stamp(0), event), R"(     0.000 s  track 5 entered zone 0/1 "z")");
}

// The same site with other text in place of some.
Configuration changed(const std::string& from, const std::string& to) {
  std::string text = site;
  text.replace(text.find(from), from.size(), to);
  return check(text).configuration.value();
}

Lines linesOf(Stamp stamp, const std::vector<Event>& events) {
  SessionFrame frame;
  frame.stamp = stamp;
  frame.events = events;
  return linesOf(frame);
}

TEST(Session, ReconfiguringKeepsWhatIsTheSameAndTellsWhatIsLost) {
  Session session(check(site).configuration.value());
  const std::vector<float> inside = {0.5F, 0.5F, 1.0F};
  const Points point = filter::classify::PointsView<float>::interleaved(inside.data(), 12, 1);
  const std::vector<TrackedObject> seen = {person(7, 5.0, 8.0)};
  session.take(1s, point, &seen);
  EXPECT_TRUE(session.reconfigure(changed("Yard", "Court")).empty());
  EXPECT_EQ(linesOf(1s, session.reconfigure(changed(R"({"x":10,"y":10})", R"({"x":9,"y":9})"))),
            (Lines{R"(     1.000 s  zone 0/0 "Box" cleared, since 1.000 s)",
                   R"(     1.000 s  person 7 lost in zone 0/0 "Box" after 0.000 s, last seen at 1.000 s)"}));
  const SessionFrame frame = session.take(2s, point, &seen);
  EXPECT_TRUE(frame.points->isOccupied[0]);
  EXPECT_EQ(frame.objects->inside[0], 1U);
}

TEST(Session, ReconfiguringKeepsTheTalliesOnlyWhereNoLineChanged) {
  Session session(check(site).configuration.value());
  const std::vector<TrackedObject> above = {person(7, 5.0, 8.0)};
  const std::vector<TrackedObject> below = {person(7, 5.0, 2.0)};
  session.take(1s, std::nullopt, &above);
  session.reconfigure(changed("Yard", "Court"));
  session.take(2s, std::nullopt, &below);
  EXPECT_EQ(session.lines().tallies().at(0).crossings.toRight, 1U);
  session.reconfigure(changed(R"({"x":10,"y":5})", R"({"x":9,"y":5})"));
  EXPECT_EQ(session.lines().tallies().at(0).crossings.toRight, 0U);
  session.reconfigure(changed(R"("Door")", R"("Gate")"));
  EXPECT_EQ(session.lines().tallies().at(0).line, "Gate");
}

TEST(Session, ReconfiguringWithWhatIsRefusedChangesNothing) {
  Session session(check(site).configuration.value());
  const std::vector<TrackedObject> seen = {person(7, 5.0, 8.0)};
  session.take(1s, noPoints, &seen);
  Configuration wrong = changed("Yard", "Court");
  wrong.detector.setEvaluationFieldIndex(8);
  EXPECT_THROW(session.reconfigure(wrong), std::out_of_range);
  EXPECT_EQ(session.objects().occupants(0, 0).size(), 1U);
  session.setActiveField(3);
  EXPECT_EQ(session.activeField(), 3);
  EXPECT_THROW(session.setActiveField(8), std::out_of_range);
  EXPECT_EQ(session.take(2s, noPoints, nullptr).points->activeField, 3);
}

TEST(SessionTables, TimingsCanBeLeftOut) {
  const Configuration configuration = check(site).configuration.value();
  Session session(configuration);
  SessionFrame frame = session.take(1s, noPoints, nullptr);
  frame.taken = Duration(1500000);
  SessionTables tables(zonesOf(configuration.detector));
  const std::string told = tables.frameRow(frame, "a.pcd");
  EXPECT_NE(told.find(",1.500,"), std::string::npos) << told;
  tables.leaveOutTimings();
  std::string expected = told;
  expected.erase(expected.find("1.500"), 5);
  EXPECT_EQ(tables.frameRow(frame, "a.pcd"), expected);
}

TEST(SessionPlot, WhatASessionHadNoInputForIsLeftOutAtItsEnd) {
  const Configuration configuration = check(site).configuration.value();
  const auto drawn = [&configuration](const SessionInputs& before, const SessionInputs& after) {
    Session session(configuration);
    SessionPlot plot(configuration, before);
    plot.add(session.take(1s, noPoints, nullptr), nullptr);
    plot.setInputs(after);
    return plot.draw("plan");
  };
  const SessionInputs points{true, false};
  EXPECT_EQ(drawn({true, true}, points), drawn(points, points));
  EXPECT_NE(drawn({true, true}, {true, true}), drawn(points, points));
}

}  // namespace
}  // namespace orvantis::toolkit
