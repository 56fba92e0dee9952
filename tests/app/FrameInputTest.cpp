#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Program.h"
#include "WrittenCloud.h"
#include "WrittenRecording.h"
#include "support/TemporaryFolder.h"

// What the command takes as frames: files, folders, lists and recordings; what it leaves out, and what it
// says.

namespace orvantis::testing {
namespace {

const std::string documents = ORVANTIS_SOURCE_DIR "/tests/app/documents/";

// A box from (0, 0) to (10, 10), between 0 and 2 m.
constexpr const char* box = R"({"ZoneDetector":{"version":"1.1","sensitivity":10,"EvaluationField":[
    {"name":"Yard","index":0,"Zone":[{"name":"Box","index":0,"zMin":0,"zMax":2,
      "shape":"rectangle","Rectangle":{"rotation":0,"Point":[{"x":0,"y":0},{"x":10,"y":10}]}}]}]}})";

class FrameInput : public ::testing::Test {
 protected:
  FrameInput() { folder_.write("site.json", box); }

  Outcome run(std::vector<std::string> arguments, const std::string& command = "run") const {
    arguments.insert(arguments.begin(), {command, "--json", "site.json"});
    return zoneDetector(arguments, folder_.path());
  }
  // "points in the box/no returns" of each frame.
  static std::string countsOf(const std::string& out) {
    const auto number = [](const std::string& line, const std::string& key, std::size_t from) {
      const std::size_t at = line.find("\"" + key + "\":", from) + key.size() + 3;
      return line.substr(at, line.find_first_of(",}", at) - at);
    };
    std::string text;
    for (std::size_t begin = 0; begin < out.size();) {
      const std::size_t end = out.find('\n', begin);
      const std::string line = out.substr(begin, end - begin);
      text += (text.empty() ? "" : " ") + number(line, "points", line.find("\"zones\"")) + "/" +
              number(line, "noReturns", 0);
      begin = end + 1;
    }
    return text;
  }
  static std::string floats(const std::vector<float>& values) {
    std::string bytes(values.size() * sizeof(float), '\0');
    std::memcpy(bytes.data(), values.data(), bytes.size());
    return bytes;
  }

  TemporaryFolder folder_;
};

TEST_F(FrameInput, AFolderIsItsFramesInTheOrderInWhichPeopleCount) {
  std::filesystem::create_directory(folder_.path("frames"));
  folder_.write("frames/f10.xyz", "1 1 1\n1 1 1\n1 1 1\n");
  folder_.write("frames/f9.xyz", "1 1 1\n1 1 1\n");
  folder_.write("frames/f1.xyz", "1 1 1\n");
  folder_.write("frames/notes.md", "no frame");
  EXPECT_EQ(countsOf(run({"frames"}).out), "1/0 2/0 3/0");
}

TEST_F(FrameInput, AFolderWithoutFramesIsRefused) {
  std::filesystem::create_directory(folder_.path("frames"));
  const Outcome outcome = run({"frames"});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_EQ(outcome.err,
            "zone-detector: frames: cannot be read: the folder holds neither frames nor recordings\n");
}

TEST_F(FrameInput, AZoneIsReachedFromItsMinimumPointCountOn) {
  folder_.write("site.json", std::string(box).replace(std::string(box).find("10,"), 2, "9"));
  folder_.write("a.xyz", "1 1 1\n");
  folder_.write("b.xyz", "1 1 1\n1 1 1\n");
  const std::string out = run({"a.xyz", "b.xyz"}).out;
  EXPECT_NE(
      out.find(R"("minPoints":2,"zones":[{"field":0,"fieldName":"Yard","zone":0,"name":"Box","points":1,)"
               R"("reached":false}])"),
      std::string::npos)
      << out;
  EXPECT_NE(out.find(R"("points":2,"reached":true}])"), std::string::npos) << out;
  const std::string table = zoneDetector({"run", "site.json", "a.xyz", "b.xyz"}, folder_.path()).out;
  EXPECT_NE(table.find("  0 Yard  0 Box       1  no\n"), std::string::npos) << table;
  EXPECT_NE(table.find("  0 Yard  0 Box       2  yes\n"), std::string::npos) << table;
}

TEST_F(FrameInput, WhatCannotBeReadIsNamedWithItsReason) {
  folder_.write("a.doc", "x");
  folder_.write("a.xyz", "1 1 1\n2 b 2\n");
  EXPECT_EQ(run({"missing.pcd"}).err,
            "zone-detector: missing.pcd: cannot be read: No such file or directory\n");
  EXPECT_EQ(
      run({"a.doc"}).err,
      "zone-detector: a.doc: cannot be read: unknown kind of file; frames are .pcd, .ply, .las, .bin, .xyz, "
      ".txt, .csv and .pts, recordings MCAP files and ROS bags\n");
  const std::string reason = run({"a.xyz"}).err;
  EXPECT_EQ(reason.find("zone-detector: a.xyz:2:3: cannot be read: "), 0U) << reason;
}

TEST_F(FrameInput, TheColumnsOfRecordsCanBeGiven) {
  folder_.write("a.bin", floats({7, 1, 1, 1, 8, 2, 2, 1}));
  EXPECT_EQ(countsOf(run({"a.bin", "--columns", "t,x,y,z"}).out), "2/0");
  EXPECT_EQ(countsOf(run({"a.bin", "--columns", "4"}).out), "2/0");
  const Outcome wrong = run({"a.bin", "--columns", "two"});
  EXPECT_EQ(wrong.code, 2);
  EXPECT_EQ(wrong.err.find("zone-detector: --columns "), 0U) << wrong.err;
}

TEST_F(FrameInput, PointsAtTheOriginAreToldAndLeftOutWhenAsked) {
  folder_.write("a.xyz", "0 0 0\n0 0 -0\n1 1 1\n50 1 1\n");
  EXPECT_EQ(
      run({"a.xyz", "--drop-origin", "--max-range", "40"}).out.substr(0, 125),
      R"({"frame":0,"file":"a.xyz","points":4,"noReturns":0,"droppedAtOrigin":2,"droppedTooNear":0,"droppedTooFar":1,"excluded":0,"min)");
  EXPECT_EQ(run({"a.xyz", "--drop-origin"}).err, "");
  EXPECT_EQ(run({"a.xyz"}).err,
            "zone-detector: warning: in 1 frame, first in a.xyz, more than 1 % of the points are at (0, 0, "
            "0), as many "
            "drivers write \"no return\"; --drop-origin leaves them out\n");
}

// The pose moves these points away from (0, 0, 0).
TEST_F(FrameInput, PointsAtTheOriginOfTheSensorAreToldWithAPoseToo) {
  folder_.write("a.xyz", "0 0 0\n1 1 1\n");
  EXPECT_EQ(run({"a.xyz", "--pose", "1,2,0,0,0,0"}).err, run({"a.xyz"}).err);
  EXPECT_NE(run({"a.xyz"}).err.find("more than 1 % of the points are at (0, 0, 0)"), std::string::npos);
  folder_.write("b.xyz", "-1 -2 0\n1 1 1\n");
  EXPECT_EQ(run({"b.xyz", "--pose", "1,2,0,0,0,0"}).err, "");
}

TEST_F(FrameInput, APoseBringsPointsAndTracksIntoTheFrameOfTheZones) {
  folder_.write("a.xyz", "-19 0 -2\n");
  // The sensor stands at (20, 5, 3).
  EXPECT_EQ(countsOf(run({"a.xyz", "--pose", "20,5,3,0,0,0"}).out), "1/0");
  EXPECT_EQ(countsOf(run({"a.xyz", "--pose", "20,5,3,0,0,180"}).out), "0/0");
  folder_.write("t.csv", "stamp,id,class,x,y,length,width,heading,zmin,zmax\n0,1,a,-19,0,1,1,0,-3,-1\n");
  const std::string tracked = run({"--tracks", "t.csv", "--pose", "20,5,3,0,0,0"}).out;
  EXPECT_NE(tracked.find("\"entered\""), std::string::npos);
  EXPECT_EQ(run({"--tracks", "t.csv", "--tracks-format", "csv", "--pose", "20,5,3,0,0,0"}).out, tracked);
  EXPECT_EQ(run({"--tracks", "t.csv"}).out.find("\"entered\""), std::string::npos);
}

// Logged 5 s after the messages' own stamps.
TEST_F(FrameInput, ARecordingGivesTheTopicsAndStampsThatAreChosen) {
  WrittenRecording recording;
  recording.topics = {{"/front"}, {"/rear"}};
  for (const std::int64_t stamp : {1'000'000'000, 1'500'000'000}) {
    for (std::size_t topic = 0; topic < 2; ++topic) {
      recording.messages.push_back({topic, static_cast<std::uint64_t>(stamp) + 5'000'000'000U,
                                    asCdr(floatCloud(std::vector<Point3>(topic + 1, {1, 1, 1}),
                                                     stamp + (topic == 0 ? 0 : 250'000'000)))});
    }
  }
  folder_.write("drive.mcap", asMcap(recording));
  const auto beginsOf = [this](const std::vector<std::string>& arguments) {
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    std::string text;
    for (std::size_t at = 0; (at = outcome.out.find("\"topic\"", at)) != std::string::npos;) {
      const std::size_t end = outcome.out.find(",\"noReturns\"", at);
      text += outcome.out.substr(at, end - at) + "\n";
      at = end;
    }
    return text;
  };
  EXPECT_EQ(beginsOf({"drive.mcap", "--topic", "/rear"}),
            "\"topic\":\"/rear\",\"stamp\":1.25,\"points\":2\n"
            "\"topic\":\"/rear\",\"stamp\":1.75,\"points\":2\n");
  EXPECT_EQ(beginsOf({"drive.mcap", "--topic", "/front", "--topic", "/rear"}),
            "\"topic\":\"/front\",\"stamp\":1,\"points\":1\n"
            "\"topic\":\"/rear\",\"stamp\":1.25,\"points\":2\n"
            "\"topic\":\"/front\",\"stamp\":1.5,\"points\":1\n"
            "\"topic\":\"/rear\",\"stamp\":1.75,\"points\":2\n");
  EXPECT_EQ(beginsOf({"drive.mcap", "--topic", "/front", "--stamp-from", "log"}),
            "\"topic\":\"/front\",\"stamp\":6,\"points\":1\n"
            "\"topic\":\"/front\",\"stamp\":6.5,\"points\":1\n");
  EXPECT_EQ(beginsOf({"drive.mcap", "--topic", "/front", "--stamp-from", "header"}),
            beginsOf({"drive.mcap", "--topic", "/front"}));

  const std::string topics =
      "/front (sensor_msgs/msg/PointCloud2, 2 messages, 2 Hz), "
      "/rear (sensor_msgs/msg/PointCloud2, 2 messages, 2 Hz)\n";
  EXPECT_EQ(
      run({"drive.mcap"}).err,
      "zone-detector: drive.mcap: cannot be read: the recording has point clouds of 2 topics; choose with "
      "--topic: " +
          topics);
  const Outcome other = run({"drive.mcap", "--topic", "/front", "--topic", "/left"});
  EXPECT_EQ(other.code, 1);
  EXPECT_EQ(other.err,
            "zone-detector: drive.mcap: cannot be read: the recording has no topic /left; it has " + topics);
}

TEST_F(FrameInput, ARateIsForSingleFramesAlone) {
  folder_.write("list", "0 a.xyz\n");
  folder_.write("a.xyz", "1 1 1\n");
  EXPECT_EQ(run({"--stamps", "list"}).code, 0);
  EXPECT_EQ(run({"a.xyz", "a.xyz", "--events"}).code, 0);
}

}  // namespace
}  // namespace orvantis::testing
