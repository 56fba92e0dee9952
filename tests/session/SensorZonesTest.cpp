#include <chrono>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "document/Check.h"
#include "session/EventText.h"
#include "session/SensorZones.h"
#include "session/Session.h"
#include "session/SessionSummary.h"
#include "session/SessionTables.h"
#include "session/SummaryRecords.h"
#include "text/Record.h"

namespace orvantis::toolkit {
namespace {

using filter::monitor::SensorPoints;
using namespace std::chrono_literals;

const std::string square = R"("zMin":0,"zMax":2,
      "shape":"rectangle","Rectangle":{"rotation":0,"Point":[{"x":0,"y":0},{"x":10,"y":10}]})";
const std::string id = R"("id":"00000000-0000-0000-0000-000000000001",)";

// The same square for every sensor, for the one at the front, and for the one at the rear; at its left edge
// an exclusion zone.
const std::string site = R"({"ZoneDetector":{"sensitivity":9,"EvaluationField":[
    {"name":"Yard","index":0,"Zone":[{"name":"Box","index":0,)" +
                         square + R"(}]}],"ExclusionZone":[{"name":"Tree","zMin":0,"zMax":2,
      "shape":"rectangle","Rectangle":{"rotation":0,"Point":[{"x":0,"y":0},{"x":1,"y":10}]}}]},
    "Zone3d":[{"name":"Front",)" +
                         id + R"("Sensors":{"lidar":"front"},)" + square + R"(},{"name":"Rear",)" + id +
                         R"("Sensors":{"lidar":"rear"},)" + square + "}]}";

Configuration siteOf(const std::string& text) {
  return check(text).configuration.value();
}

// `count` points in the square, and one in the exclusion zone.
Points inBox(std::size_t count) {
  static const std::vector<float> point = {5.0F, 5.0F, 1.0F, 0.5F, 5.0F, 1.0F};
  static std::vector<std::vector<float>> kept;
  std::vector<float>& points = kept.emplace_back();
  for (std::size_t i = 0; i <= count; ++i) {
    points.insert(points.end(), point.begin() + (i == count ? 3 : 0), point.begin() + (i == count ? 6 : 3));
  }
  return filter::classify::PointsView<float>::interleaved(points.data(), 12, count + 1);
}

SessionOptions bySensor() {
  SessionOptions options;
  options.followsSensorZones = true;
  return options;
}

TEST(SensorZones, CountThePointsOfTheirOwnSensorsOutsideExclusionZones) {
  auto monitor = monitorOfSensorZones(siteOf(site)).value();
  const auto frame = monitor.update(0s, {SensorPoints{"front", inBox(2)}, SensorPoints{"rear", inBox(1)}});
  EXPECT_EQ(frame.counts[0], 2U);
  EXPECT_EQ(frame.counts[1], 1U);
  EXPECT_EQ(frame.excluded, 2U);
  EXPECT_TRUE(frame.isOccupiedNow[0]);
  EXPECT_FALSE(frame.isOccupiedNow[1]);
  EXPECT_EQ(monitor.explain(std::vector<SensorPoints>())[1].slot.zoneName, "Rear");
}

TEST(SensorZones, ThereIsNothingToFollowWithoutThem) {
  Configuration configuration = siteOf(site);
  configuration.sensorZones.clear();
  EXPECT_FALSE(monitorOfSensorZones(configuration));
  EXPECT_TRUE(Session(configuration, bySensor()).sensorZoneNames().empty());
}

TEST(SensorZones, AtMost24AreFollowed) {
  Configuration configuration = siteOf(site);
  configuration.sensorZones.resize(24, configuration.sensorZones[0]);
  EXPECT_EQ(monitorOfSensorZones(configuration)->explain(std::vector<SensorPoints>()).size(), 24U);
  configuration.sensorZones.push_back(configuration.sensorZones[0]);
  try {
    Session(configuration, bySensor());
    FAIL();
  } catch (const std::invalid_argument& error) {
    EXPECT_STREQ(error.what(), "the document has 25 zones in \"Zone3d\"; at most 24 can be followed");
  }
  Session alone(configuration);  // where they are not followed, they may be as many as they like
  EXPECT_TRUE(alone.sensorZoneNames().empty());
}

TEST(Session, TellsWhatHappensInZonesOfSensors) {
  Session session(siteOf(site), bySensor());
  SessionSummary summary;
  std::vector<std::string> lines;
  const SessionTables tables(zonesOf(siteOf(site).detector), 2);
  std::string rows = tables.eventHeader();
  std::string frames = tables.frameHeader();
  const auto take = [&](filter::monitor::Stamp stamp, std::size_t front, std::size_t rear) {
    SessionFrame frame =
        session.take(stamp, inBox(front + rear), nullptr,
                     {SensorPoints{"front", inBox(front)}, SensorPoints{"rear", inBox(rear)}});
    frame.taken = 0s;
    summary.add(frame);
    for (const Event& event : frame.events) {
      lines.push_back(toLine(frame.stamp, event) + " " + toJson(recordOf(frame.stamp, event)));
    }
    rows += tables.eventRows(frame);
    frames += tables.frameRow(frame, "f");
  };
  take(0s, 2, 1);
  take(1s, 3, 0);
  take(3s, 1, 2);
  EXPECT_EQ(
      lines,
      (std::vector<std::string>{
          R"(     0.000 s  zone 0/0 "Box" occupied, since 0.000 s {"type":"zone","stamp":0,"event":"occupied","field":0,"fieldName":"Yard","zone":0,"name":"Box","began":0})",
          R"(     0.000 s  sensor zone 0 "Front" occupied, since 0.000 s {"type":"sensorZone","stamp":0,"event":"occupied","zone":0,"name":"Front","began":0})",
          R"(     0.000 s  outputs of field 0: high low low {"type":"outputs","stamp":0,"field":0,"levels":["high","low","low"]})",
          R"(     3.000 s  sensor zone 0 "Front" cleared, since 3.000 s {"type":"sensorZone","stamp":3,"event":"cleared","zone":0,"name":"Front","began":3})",
          R"(     3.000 s  sensor zone 1 "Rear" occupied, since 3.000 s {"type":"sensorZone","stamp":3,"event":"occupied","zone":1,"name":"Rear","began":3})"}));
  EXPECT_EQ(summary.ofSensorZone(0).occupied, 3s);
  EXPECT_EQ(summary.ofSensorZone(1).occupied, 0s);
  const auto records = recordsOf(summary, session, {}, {true, false});
  ASSERT_EQ(records.size(), 3U);
  EXPECT_EQ(
      toJson(records[0]),
      R"({"type":"sensorZoneSummary","zone":0,"name":"Front","occupied":3,"activations":1,"peakPoints":3})");
  EXPECT_EQ(
      toJson(records[1]),
      R"({"type":"sensorZoneSummary","zone":1,"name":"Rear","occupied":0,"activations":1,"peakPoints":2})");
  EXPECT_EQ(rows,
            "stamp,type,event,field,zone,zone_name,line,track,class,began,dwell,met,x,y\n"
            "0,zone,occupied,0,0,Box,,,,0,,,,\n"
            "0,sensorZone,occupied,,0,Front,,,,0,,,,\n"
            "0,outputs,high low low,0,,,,,,,,,,\n"
            "3,sensorZone,cleared,,0,Front,,,,3,,,,\n"
            "3,sensorZone,occupied,,1,Rear,,,,3,,,,\n");
  EXPECT_EQ(frames,
            "stamp,cloud,points,no_returns,excluded,objects,output_0,output_1,output_2,taken_ms,points_0_0,"
            "occupied_0_0,objects_0_0,points_sensor_zone_0,occupied_sensor_zone_0,points_sensor_zone_1,"
            "occupied_sensor_zone_1\n"
            "0,f,4,0,1,,high,low,low,0.000,3,1,,2,1,1,0\n"
            "1,f,4,0,1,,high,low,low,0.000,3,1,,3,1,0,0\n"
            "3,f,4,0,1,,high,low,low,0.000,3,1,,1,0,2,1\n");
  EXPECT_EQ(
      tables.zoneTable(summary, session, {true, false}),
      "field,field_name,zone,zone_name,occupied,activations,peak_points,peak_objects,visits,median_dwell,"
      "longest_dwell\n"
      "0,Yard,0,Box,3,1,3,,,,\n"
      ",,0,Front,3,1,3,,,,\n"
      ",,1,Rear,0,1,2,,,,\n");
}

// Without a word of whose the points are, the zones of sensors are not there.
TEST(Session, DoesNotFollowZonesOfSensorsUnlessAsked) {
  Session session(siteOf(site));
  const SessionFrame frame = session.take(0s, inBox(3), nullptr, {SensorPoints{"front", inBox(3)}});
  EXPECT_FALSE(frame.sensorZones);
  EXPECT_EQ(frame.events.size(), 2U);
}

}  // namespace
}  // namespace orvantis::toolkit
