#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include <gtest/gtest.h>

#include "Program.h"
#include "WrittenCloud.h"
#include "WrittenRecording.h"
#include "input/FrameInput.h"
#include "input/SensorInput.h"
#include "session/Coordinates.h"
#include "support/TemporaryFolder.h"

// The frames of several sensors, and files in the order of their stamps.

namespace orvantis::testing {
namespace {

constexpr const char* square = R"("zMin":0,"zMax":2,"shape":"rectangle",
    "Rectangle":{"rotation":0,"Point":[{"x":0,"y":0},{"x":10,"y":10}]}})";

// A box from (0, 0) to (10, 10), between 0 and 2 m; the same again, bound to sensors.
std::string siteOf(const std::string& sensors) {
  return R"({"ZoneDetector":{"version":"1.1","sensitivity":9,"EvaluationField":[
    {"name":"Yard","index":0,"Zone":[{"name":"Box","index":0,)" +
         std::string(square) + R"(]}]},
    "Zone3d":[{"name":"Bound","id":"00000000-0000-0000-0000-000000000001","Sensors":{"lidar":)" +
         sensors + "}," + square + "]}";
}

struct Cloud {
  std::string topic;
  std::int64_t stamp;  // milliseconds
  std::size_t size;    // points at (1, 1, 1)
};

std::string mcapOf(const std::vector<Cloud>& clouds) {
  WrittenRecording recording;
  for (const Cloud& cloud : clouds) {
    std::size_t topic = 0;
    while (topic < recording.topics.size() && recording.topics[topic].name != cloud.topic) {
      ++topic;
    }
    if (topic == recording.topics.size()) {
      recording.topics.push_back({cloud.topic});
    }
    const std::int64_t stamp = cloud.stamp * 1000000;
    recording.messages.push_back({topic, static_cast<std::uint64_t>(stamp),
                                  asCdr(floatCloud(std::vector<Point3>(cloud.size, {1, 1, 1}), stamp))});
  }
  return asMcap(recording);
}

std::string repeated(const std::string& row, int count) {
  std::string text;
  for (int i = 0; i < count; ++i) {
    text += row;
  }
  return text;
}

class Sensors : public ::testing::Test {
 protected:
  Sensors() { folder_.write("site.json", siteOf(R"(["front"])")); }

  Outcome run(std::vector<std::string> arguments, const std::string& command = "run") const {
    arguments.insert(arguments.begin(), {command, "--json", "site.json"});
    return zoneDetector(arguments, folder_.path());
  }
  // Of each frame "stamp: sensor stamp points, ...; points of all in the box, of its own sensors in the bound
  // zone".
  static std::vector<std::string> framesOf(const std::string& out) {
    std::vector<std::string> frames;
    for (std::size_t begin = 0; begin < out.size();) {
      const std::size_t end = out.find('\n', begin);
      const std::string line = out.substr(begin, end - begin);
      const std::size_t sensors = line.find("\"sensors\":[");
      std::string text = valueOf(line, "stamp", 0) + ":";
      for (std::size_t at = line.find("{\"name\"", sensors); at < line.find("\"noReturns\"");
           at = line.find("{\"name\"", at + 1)) {
        text += " " + valueOf(line, "name", at) + " " + valueOf(line, "stamp", at) + " " +
                valueOf(line, "points", at) + ",";
      }
      text += " " + valueOf(line, "points", line.find("\"zones\"")) + ", " +
              valueOf(line, "points", line.find("\"sensorZones\""));
      frames.push_back(text);
      begin = end + 1;
    }
    return frames;
  }
  static std::string valueOf(const std::string& line, const std::string& key, std::size_t from) {
    const std::size_t at = line.find("\"" + key + "\":", from) + key.size() + 3;
    return line.substr(at, line.find_first_of(",}", at) - at);
  }

  TemporaryFolder folder_;
};

using Texts = std::vector<std::string>;

TEST_F(Sensors, EachHasItsPoseAndItsFilesBesideTheList) {
  std::filesystem::create_directories(folder_.path("set/front"));
  folder_.write("set/front/f1.xyz", repeated("-1 -1 1\n", 2));
  folder_.write("set/rear.csv", "x,y,z\n1,1,-1\n1,1,-1\n1,1,-1\n9,9,9\n");
  folder_.write("set/sensors.json", R"({"sensors":[
    {"name":"front","pose":{"x":0,"y":0,"z":0,"roll":0,"pitch":0,"yaw":180},"files":["front"]},
    {"name":"rear","pose":{"x":0,"y":0,"z":2,"roll":0,"pitch":0,"yaw":0},"files":["rear.csv"]}]})");
  const Outcome outcome = run({"--sensors", "set/sensors.json"});
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(
      outcome.out,
      R"({"frame":0,"stamp":0,"sensors":[{"name":"front","file":"set/front/f1.xyz","stamp":0,"points":2},)"
      R"({"name":"rear","file":"set/rear.csv","stamp":0,"points":4}],"points":6,"noReturns":0,"excluded":0,)"
      R"("minPoints":2,"zones":[{"field":0,"fieldName":"Yard","zone":0,"name":"Box","points":5,"reached":true}],)"
      R"("sensorZones":[{"zone":0,"name":"Bound","enabled":true,"sensors":["front"],"points":2,"reached":true}]})"
      "\n");
  EXPECT_EQ(zoneDetector({"run", "site.json", "--sensors", "set/sensors.json"}, folder_.path()).out,
            "set/front/f1.xyz, set/rear.csv at 0 s: 6 points, 0 no returns, 0 in exclusion zones\n"
            "  FIELD   ZONE   POINTS  ≥ 2\n"
            "  0 Yard  0 Box       5  yes\n"
            "  SENSOR ZONE  SENSORS  POINTS  ≥ 2\n"
            "  0 Bound      front         2  yes\n");
}

TEST_F(Sensors, FramesWithinTheWindowAreTakenTogether) {
  folder_.write("drive.mcap", mcapOf({{"/f", 1000, 1},
                                      {"/r", 1050, 10},
                                      {"/f", 1100, 2},
                                      {"/r", 1151, 20},
                                      {"/f", 1152, 3},
                                      {"/f", 1160, 4},
                                      {"/r", 1300, 30}}));
  folder_.write("sensors.json",
                R"({"sensors":[{"name":"front","topic":"/f"},{"name":"rear","topic":"/r"}]})");
  const Outcome outcome = run({"--sensors", "sensors.json", "drive.mcap"});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(framesOf(outcome.out), (Texts{
                                       "1: \"front\" 1 1, \"rear\" 1.05 10, 11, 1",
                                       "1.1: \"front\" 1.1 2, 2, 2",
                                       "1.151: \"front\" 1.152 3, \"rear\" 1.151 20, 23, 3",
                                       "1.16: \"front\" 1.16 4, 4, 4",
                                       "1.3: \"rear\" 1.3 30, 30, 0",
                                   }));
  EXPECT_EQ(outcome.err,
            "zone-detector: warning: sensor \"front\" has no frame within the window in 1 of 5 frames\n"
            "zone-detector: warning: sensor \"rear\" has no frame within the window in 2 of 5 frames\n");
  EXPECT_EQ(framesOf(run({"--sensors", "sensors.json", "drive.mcap", "--window", "0.051"}).out),
            (Texts{"1: \"front\" 1 1, \"rear\" 1.05 10, 11, 1",
                   "1.1: \"front\" 1.1 2, \"rear\" 1.151 20, 22, 2", "1.152: \"front\" 1.152 3, 3, 3",
                   "1.16: \"front\" 1.16 4, 4, 4", "1.3: \"rear\" 1.3 30, 30, 0"}));
  EXPECT_EQ(framesOf(run({"--sensors", "sensors.json", "drive.mcap", "--window", "0"}).out).size(), 7U);
}

TEST_F(Sensors, WhatHappensInTheZonesOfSensorsIsTold) {
  folder_.write("drive.mcap", mcapOf({{"/f", 1000, 1}, {"/r", 1000, 5}, {"/f", 1100, 2}, {"/r", 1100, 0}}));
  folder_.write("sensors.json",
                R"({"sensors":[{"name":"front","topic":"/f"},{"name":"rear","topic":"/r"}]})");
  EXPECT_EQ(
      run({"--sensors", "sensors.json", "drive.mcap", "--events"}).out,
      R"({"type":"zone","stamp":1,"event":"occupied","field":0,"fieldName":"Yard","zone":0,"name":"Box","began":1})"
      "\n"
      R"({"type":"outputs","stamp":1,"field":0,"levels":["high","low","low"]})"
      "\n"
      R"({"type":"sensorZone","stamp":1.1,"event":"occupied","zone":0,"name":"Bound","began":1.1})"
      "\n"
      R"({"type":"zoneSummary","field":0,"fieldName":"Yard","zone":0,"name":"Box","occupied":0.1,"activations":1,"peakPoints":6})"
      "\n"
      R"({"type":"sensorZoneSummary","zone":0,"name":"Bound","occupied":0,"activations":1,"peakPoints":2})"
      "\n"
      R"({"type":"summary","pointFrames":2,"objectFrames":0,"begin":1,"end":1.1})"
      "\n");
  EXPECT_EQ(
      zoneDetector({"run", "--quiet", "site.json", "--sensors", "sensors.json", "drive.mcap", "--events"},
                   folder_.path())
          .out,
      "     1.000 s  zone 0/0 \"Box\" occupied, since 1.000 s\n"
      "     1.000 s  outputs of field 0: high low low\n"
      "     1.100 s  sensor zone 0 \"Bound\" occupied, since 1.100 s\n"
      "\n"
      "  FIELD   ZONE   OCCUPIED s  TIMES  PEAK POINTS\n"
      "  0 Yard  0 Box       0.100      1            6\n"
      "\n"
      "  SENSOR ZONE  OCCUPIED s  TIMES  PEAK POINTS\n"
      "  0 Bound           0.000      1            2\n");
  run({"--sensors", "sensors.json", "drive.mcap", "--csv", "tables", "--plot", "plot.svg"});
  EXPECT_EQ(
      readAll(folder_.path("tables/zones.csv")),
      "field,field_name,zone,zone_name,occupied,activations,peak_points,peak_objects,visits,median_dwell,"
      "longest_dwell\n0,Yard,0,Box,0.1,1,6,,,,\n,,0,Bound,0,1,2,,,,\n");
  EXPECT_NE(readAll(folder_.path("plot.svg")).find("site.json, sensors.json"), std::string::npos);
}

TEST_F(Sensors, ExplanationsAreOfThePointsOfAll) {
  folder_.write("a.xyz", "1 1 1\n");
  folder_.write("b.xyz", "1 1 5\n2 2 1\n");
  folder_.write("sensors.json",
                R"({"sensors":[{"name":"a","files":["a.xyz"]},{"name":"b","files":["b.xyz"]}]})");
  const std::string out = run({"--quiet", "--sensors", "sensors.json"}, "explain").out;
  EXPECT_NE(
      out.find(R"("file":"a.xyz, b.xyz","field":0,"fieldName":"Yard","zone":0,"name":"Box","points":2,)"),
      std::string::npos)
      << out;
  EXPECT_NE(out.find(R"("above":1,)"), std::string::npos) << out;
}

// Coordinates in float64 beside others in float32, and what is left out of each.
TEST_F(Sensors, PointsOfAllKindsStandTogether) {
  folder_.write("sensors.json", R"({"sensors":[{"name":"front","files":["a.pcd"]},
    {"name":"rear","files":["b.csv"]}]})");
  folder_.write(
      "a.pcd",
      "VERSION 0.7\nFIELDS x y z\nSIZE 4 4 4\nTYPE F F F\nCOUNT 1 1 1\nWIDTH 4\nHEIGHT 1\nPOINTS 4\n"
      "DATA ascii\n1 1 1\n0 0 0\nnan 1 1\n10 10 2\n");
  folder_.write("b.csv", "x,y,z\n10.0000001,1,1\n0,0,0\n9.9999999,1,1\n");
  const std::string out = run({"--sensors", "sensors.json", "--drop-origin"}).out;
  EXPECT_NE(out.find(R"("points":7,"noReturns":1,"droppedAtOrigin":2,)"), std::string::npos) << out;
  EXPECT_EQ(framesOf(out), Texts{"0: \"front\" 0 3, \"rear\" 0 2, 2, 1"});
  EXPECT_EQ(
      run({"--sensors", "sensors.json"}).err,
      "zone-detector: warning: in 1 frame, first in a.pcd, b.csv, more than 1 % of the points are at (0, 0, "
      "0), as many drivers write \"no return\"; --drop-origin leaves them out\n");
}

TEST_F(Sensors, TheirListIsRefusedWithEveryError) {
  folder_.write("sensors.json", "{\"sensors\":[\n{\"name\":\"a\"},\n{\"topic\":7,\"pose\":[]}]}");
  const Outcome outcome = run({"--sensors", "sensors.json"});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_EQ(
      outcome.err,
      "zone-detector: sensors.json: 3 errors\n"
      "sensors.json:2:1: error: sensors[0]: \"files\" and \"topic\" are both missing; give its frames, or "
      "its "
      "topic in the recordings of the command line\n"
      "sensors.json:3:1: error: sensors[1]: \"name\" is missing; give a text\n"
      "sensors.json:3:12: error: sensors[1]/pose: an empty list stands where an object with \"x\", \"y\", "
      "\"z\", \"roll\", \"pitch\" and \"yaw\" belongs\n");
  EXPECT_EQ(run({"--sensors", "missing.json"}).err,
            "zone-detector: missing.json: cannot be read: No such file or directory\n");
}

TEST_F(Sensors, FilesAreThoseOfTheListOrOfTheCommandLine) {
  folder_.write("a.xyz", "1 1 1\n");
  folder_.write("topic.json", R"({"sensors":[{"name":"front","topic":"/f"}]})");
  folder_.write("files.json", R"({"sensors":[{"name":"front","files":["a.xyz"],"colour":"red"}]})");
  folder_.write("input.json", R"({"sensors":[{"name":"front","files":["-"]}]})");
  EXPECT_EQ(
      run({"--sensors", "topic.json"}).err,
      "zone-detector: topic.json: sensor \"front\" names no files; give them, or its recording as CLOUD\n");
  EXPECT_EQ(run({"--sensors", "files.json", "a.xyz"}).err,
            "files.json:1:47: warning: sensors[0]/colour: unknown key; nothing reads it\n"
            "zone-detector: files.json: every sensor names its files; leave out a.xyz\n");
  EXPECT_EQ(run({"--sensors", "input.json"}).err,
            "zone-detector: input.json: sensor \"front\" cannot read the standard input; name its files\n");
}

TEST_F(Sensors, ThatAZoneNamesAndNobodyKnowsAreTold) {
  folder_.write("site.json", siteOf(R"(["front","mast"])"));
  folder_.write("a.xyz", "1 1 1\n");
  folder_.write("sensors.json", R"({"sensors":[{"name":"front","files":["a.xyz"]}]})");
  const Outcome outcome = run({"--sensors", "sensors.json"});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.err,
            "zone-detector: warning: zone \"Bound\" is bound to sensor \"mast\", which is not in the list of "
            "sensors\n");
}

TEST_F(Sensors, SingleFramesAndRecordingsAreNotTakenTogether) {
  folder_.write("a.xyz", "1 1 1\n");
  folder_.write("drive.mcap", mcapOf({{"/r", 1000, 1}}));
  folder_.write("sensors.json",
                R"({"sensors":[{"name":"front","files":["a.xyz"]},{"name":"rear","files":["drive.mcap"]}]})");
  const std::string reason =
      "the frames of sensor \"rear\" have stamps, and those of sensor \"front\" do not; give recordings for "
      "all "
      "sensors, or single frames\n";
  EXPECT_EQ(run({"--sensors", "sensors.json"}).err, "zone-detector: drive.mcap: " + reason);
  folder_.write("sensors.json",
                R"({"sensors":[{"name":"rear","files":["drive.mcap"]},{"name":"front","files":["a.xyz"]}]})");
  EXPECT_EQ(run({"--sensors", "sensors.json"}).err, "zone-detector: a.xyz: " + reason);
  folder_.write("sensors.json", R"({"sensors":[{"name":"rear","files":["drive.mcap"]}]})");
  EXPECT_EQ(
      run({"--quiet", "--sensors", "sensors.json", "--rate", "5"}).err,
      "zone-detector: drive.mcap: is a recording, whose frames have stamps; --rate is for single frames\n");
}

TEST_F(Sensors, SingleFramesAreTakenTogetherByTheirNumbers) {
  folder_.write("a1.xyz", "1 1 1\n");
  folder_.write("a2.xyz", repeated("1 1 1\n", 2));
  folder_.write("b1.xyz", repeated("1 1 1\n", 3));
  folder_.write("b2.xyz", repeated("1 1 1\n", 4));
  folder_.write("sensors.json", R"({"sensors":[{"name":"front","files":["a1.xyz","a2.xyz"]},
    {"name":"rear","files":["b1.xyz","b2.xyz"]}]})");
  EXPECT_EQ(framesOf(run({"--sensors", "sensors.json"}).out),
            (Texts{"0: \"front\" 0 1, \"rear\" 0 3, 4, 1", "0.1: \"front\" 0.1 2, \"rear\" 0.1 4, 6, 2"}));
}

TEST_F(Sensors, FramesThatAreNotLaterAreLeftOutAndTold) {
  folder_.write("drive.mcap", mcapOf({{"/f", 1000, 1}, {"/f", 900, 1}, {"/f", 1000, 1}, {"/f", 1100, 2}}));
  folder_.write("sensors.json", R"({"sensors":[{"name":"front","topic":"/f"}]})");
  const Outcome outcome = run({"--sensors", "sensors.json", "drive.mcap", "--events"});
  EXPECT_NE(outcome.out.find("\"pointFrames\":2"), std::string::npos) << outcome.out;
  EXPECT_NE(outcome.err.find("zone-detector: warning: 2 frames left out: not later than the frame before\n"),
            std::string::npos)
      << outcome.err;
  EXPECT_NE(outcome.err.find("stamps go back 1 time, by at most 0.1 s"), std::string::npos) << outcome.err;

  const Outcome counts = run({"--sensors", "sensors.json", "drive.mcap"});
  EXPECT_EQ(framesOf(counts.out), (Texts{"1: \"front\" 1 1, 1, 1", "1.1: \"front\" 1.1 2, 2, 2"}));
  const std::string warnings =
      "zone-detector: warning: drive.mcap: stamps go back 1 time, by at most 0.1 s\n"
      "zone-detector: warning: 2 frames left out: not later than the frame before\n";
  EXPECT_EQ(counts.err, warnings);
  EXPECT_EQ(run({"--sensors", "sensors.json", "drive.mcap"}, "explain").err, warnings);
  EXPECT_EQ(run({"drive.mcap"}, "explain").err, warnings);
}

TEST_F(Sensors, WhatIsLeftOutOfEachIsAddedUp) {
  folder_.write("near.xyz", "0 0 0\n1 1 1\n100 0 0\n3 3 1\n");
  folder_.write("far.xyz", "5 5 1\n200 0 0\n-90 0 0\n0.5 0 0\n");
  folder_.write("sensors.json",
                R"({"sensors":[{"name":"a","files":["near.xyz"]},{"name":"b","files":["far.xyz"]}]})");
  const std::string out =
      run({"--sensors", "sensors.json", "--drop-origin", "--min-range", "2", "--max-range", "80"}).out;
  EXPECT_NE(
      out.find(R"("noReturns":0,"droppedAtOrigin":1,"droppedTooNear":2,"droppedTooFar":3,"excluded":0,)"),
      std::string::npos)
      << out;
}

// Of the first sensor only one point in two hundred is at the origin, of both together four in three
// hundred.
TEST_F(Sensors, PointsAtTheOriginOfAllAreAddedUp) {
  folder_.write("a.xyz", "0 0 0\n" + repeated("1 1 1\n", 199));
  folder_.write("b.xyz", repeated("0 0 0\n", 3) + repeated("1 1 1\n", 97));
  const auto warningOf = [this](const std::string& sensors) {
    folder_.write("sensors.json", "{\"sensors\":[" + sensors + "]}");
    return run({"--sensors", "sensors.json"}).err;
  };
  const std::string a = R"({"name":"front","files":["a.xyz"]})";
  const std::string b = R"({"name":"b","files":["b.xyz"]})";
  EXPECT_EQ(warningOf(a), "");
  EXPECT_NE(warningOf(a + "," + b).find("first in a.xyz, b.xyz, more than 1 %"), std::string::npos);
  EXPECT_NE(warningOf(b + "," + a).find("first in b.xyz, a.xyz, more than 1 %"), std::string::npos);
}

TEST_F(Sensors, HaveTheirOwnPosesAndTopics) {
  folder_.write("drive.mcap", mcapOf({{"/f", 1000, 1}}));
  toolkit::FrameOptions options;
  options.topics = {"/other"};
  options.pose = toolkit::Pose(100, 0, 0, 0, 0, 0);
  toolkit::SensorInput input({{"front", std::nullopt, {folder_.path("drive.mcap")}, ""}}, options,
                             std::nullopt, filter::monitor::Duration(0));
  const auto frame = input.next();
  ASSERT_TRUE(frame);
  EXPECT_EQ(toolkit::coordinatesOf(std::get<filter::classify::PointsView<float>>(frame->points), 0).x, 1.0);
}

TEST_F(Sensors, TellHowManyBytesWereRead) {
  folder_.write("a.xyz", "1 1 1\n");
  folder_.write("b.xyz", "1 1 1\n2 2 2\n");
  const toolkit::Sensor a{"a", std::nullopt, {folder_.path("a.xyz")}, ""};
  const toolkit::Sensor b{"b", std::nullopt, {folder_.path("b.xyz")}, ""};
  toolkit::SensorInput input({a, b}, {}, std::nullopt, filter::monitor::Duration(0));
  EXPECT_EQ(input.bytes(), 0U);
  EXPECT_TRUE(input.next());
  EXPECT_EQ(input.bytes(), 18U);

  const std::string recording = mcapOf({{"/f", 1000, 1}});
  folder_.write("drive.mcap", recording);
  toolkit::FrameInput drive({folder_.path("drive.mcap"), folder_.path("a.xyz")}, {});
  while (drive.next()) {
  }
  EXPECT_EQ(drive.bytes(), recording.size() + 6);
}

TEST_F(Sensors, ARecordingThatWasCutIsToldByTheExitCode) {
  const std::string whole = mcapOf({{"/f", 1000, 1}, {"/f", 1100, 1}});
  folder_.write("drive.mcap", whole.substr(0, whole.find("/f", whole.size() / 2) / 2 + 200));
  folder_.write("sensors.json", R"({"sensors":[{"name":"front","topic":"/f"}]})");
  const Outcome outcome = run({"--sensors", "sensors.json", "drive.mcap"});
  EXPECT_EQ(outcome.code, 4) << outcome.err;
}

TEST_F(Sensors, UsageIsTold) {
  const auto fault = [this](const Texts& arguments) {
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.code, 2);
    return outcome.err.substr(0, outcome.err.find('\n'));
  };
  EXPECT_EQ(fault({"--window", "1", "a.xyz"}), "zone-detector: --window needs --sensors");
  EXPECT_EQ(fault({"--sensors", "s", "--window", "-1"}),
            "zone-detector: --window must be between 0 and 3600, not \"-1\"");
  EXPECT_EQ(fault({"--sensors", "s", "--pose", "0,0,0,0,0,0"}),
            "zone-detector: --sensors and --pose exclude each other");
  EXPECT_EQ(fault({"--sensors", "s", "--topic", "t"}),
            "zone-detector: --sensors and --topic exclude each other");
  EXPECT_EQ(fault({"--sensors", "s", "--stamps", "t"}),
            "zone-detector: --sensors and --stamps exclude each other");
  EXPECT_EQ(fault({"--sensors", "s", "--reference"}),
            "zone-detector: --sensors and --reference exclude each other");
  EXPECT_EQ(fault({"--sensors", "-", "-"}), "zone-detector: only one input can be -, the standard input");
}

TEST_F(Sensors, AFolderOfRecordingsIsInTheOrderOfTheirStamps) {
  std::filesystem::create_directory(folder_.path("drives"));
  folder_.write("drives/1.mcap", mcapOf({{"/f", 3000, 3}, {"/f", 4000, 4}}));
  folder_.write("drives/2.mcap", mcapOf({{"/f", 1000, 1}}));
  folder_.write("drives/10.mcap", mcapOf({{"/f", 2000, 2}}));
  const auto order = [this] {
    std::string text;
    const std::string out = run({"drives"}).out;
    for (std::size_t at = out.find("\"file\":"); at != std::string::npos;
         at = out.find("\"file\":", at + 1)) {
      text += out.substr(at + 15, out.find('.', at) - at - 15) + " ";
    }
    return text;
  };
  EXPECT_EQ(order(), "2 10 1 1 ");
  // Where one has no stamp, the names decide.
  folder_.write("drives/3.xyz", "1 1 1\n");
  EXPECT_EQ(order(), "1 1 2 3 10 ");
}

}  // namespace
}  // namespace orvantis::testing
