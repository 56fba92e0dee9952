// What `info` says of frames and recordings.

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "Program.h"
#include "WrittenCloud.h"
#include "WrittenRecording.h"
#include "support/TemporaryFolder.h"

namespace orvantis::testing {
namespace {

constexpr std::int64_t second = 1'000'000'000;

WrittenMessage cloudMessage(std::size_t topic, std::int64_t stamp, std::int64_t logged,
                            const std::vector<Point3>& points) {
  return {topic, static_cast<std::uint64_t>(logged), asCdr(floatCloud(points, stamp))};
}

// Two LiDARs with 10 and 5 frames a second, between messages that begin earlier and end later.
WrittenRecording drive() {
  WrittenRecording recording;
  recording.topics = {{"/front"}, {"/silent"}, {"/status", "std_msgs/msg/String"}, {"/rear"}};
  recording.messages.push_back({2, 0, "before"});
  for (std::int64_t i = 0; i < 3; ++i) {
    recording.messages.push_back(cloudMessage(0, second + i * second / 10, 2 * second + i * second / 10,
                                              {{1, 2, 0.5}, {0, 0, 0}, {-3.0625, 4, 0.5}}));
    recording.messages.push_back(
        cloudMessage(3, second + i * second / 5, 2 * second + i * second / 5, {{5, 5, 0.5}}));
  }
  recording.messages.push_back({2, 10 * second, "after"});
  return recording;
}

class Info : public ::testing::Test {
 protected:
  Outcome info(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "info");
    return zoneDetector(arguments, folder_.path());
  }

  TemporaryFolder folder_;
};

TEST_F(Info, SaysWhatAFileHolds) {
  folder_.write("a.csv", "t,x,y,z\n0,1,2,-1.7\n1,3,4,-1.72\n2,0,0,0\n3,nan,1,1\n");
  const Outcome json = info({"--json", "a.csv"});
  EXPECT_EQ(json.code, 0);
  EXPECT_EQ(json.out, R"({"file":"a.csv","kind":"text","points":4,"noReturns":1,"atOrigin":1,"columns":[)"
                      R"({"name":"t","type":"F8","count":1},{"name":"x","type":"F8","count":1},)"
                      R"({"name":"y","type":"F8","count":1},{"name":"z","type":"F8","count":1}],)"
                      R"("extents":{"x":[0,3],"y":[0,4],"z":[-1.72,0]},"ground":-1.7})"
                      "\n");
  EXPECT_EQ(info({"a.csv"}).out,
            "a.csv\n"
            "  kind        text\n"
            "  points      4, 1 no return, 1 at (0, 0, 0)\n"
            "  columns     t F8, x F8, y F8, z F8\n"
            "  x           0 to 3\n"
            "  y           0 to 4\n"
            "  z           -1.72 to 0\n"
            "  most at     z = -1.7\n");
}

TEST_F(Info, OfAFileWithoutAFinitePointHasNoExtents) {
  folder_.write("a.xyz", "nan nan nan\n");
  EXPECT_EQ(info({"--json", "a.xyz"}).out,
            R"({"file":"a.xyz","kind":"text","points":1,"noReturns":1,"atOrigin":0,"columns":[)"
            R"({"name":"x","type":"F8","count":1},{"name":"y","type":"F8","count":1},)"
            R"({"name":"z","type":"F8","count":1}],"extents":null,"ground":null})"
            "\n");
}

TEST_F(Info, GoesOnAfterAFileThatCannotBeRead) {
  folder_.write("a.xyz", "1 1 1\n");
  const Outcome outcome = info({"--json", "missing.pcd", "a.xyz"});
  EXPECT_EQ(outcome.code, 1);
  EXPECT_EQ(outcome.err, "zone-detector: missing.pcd: cannot be read: No such file or directory\n");
  EXPECT_EQ(outcome.out.find(R"({"file":"a.xyz","kind":"text","points":1,)"), 0U) << outcome.out;
}

// The index of a recording tells how long the whole of it is; the clouds' own stamps tell their rate.
TEST_F(Info, SaysWhatARecordingHolds) {
  folder_.write("drive.mcap", asMcap(drive()));
  const Outcome outcome = info({"drive.mcap"});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.out,
            "drive.mcap\n"
            "  kind        mcap\n"
            "  topic       /front (sensor_msgs/msg/PointCloud2): 3 messages, 10 Hz\n"
            "  topic       /status (std_msgs/msg/String): 2 messages, 0.1 Hz\n"
            "  topic       /rear (sensor_msgs/msg/PointCloud2): 3 messages, 5 Hz\n"
            "  frames      6\n"
            "  stamps      1 s to 1.4 s\n"
            "  points      12, 0 no returns, 3 at (0, 0, 0)\n"
            "  columns     x F4, y F4, z F4, intensity F4\n"
            "  x           -3.062 to 5\n"
            "  y           0 to 5\n"
            "  z           0 to 0.5\n"
            "  most at     z = 0.5\n");
}

TEST_F(Info, WritesARecordingAsJson) {
  folder_.write("drive.mcap", asMcap(drive()));
  const Outcome outcome = info({"--json", "drive.mcap"});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.out,
            R"({"file":"drive.mcap","kind":"mcap","points":12,"noReturns":0,"atOrigin":3,"columns":[)"
            R"({"name":"x","type":"F4","count":1},{"name":"y","type":"F4","count":1},)"
            R"({"name":"z","type":"F4","count":1},{"name":"intensity","type":"F4","count":1}],)"
            R"("extents":{"x":[-3.0625,5],"y":[0,5],"z":[0,0.5]},"ground":0.5,"topics":{)"
            R"("/front":{"type":"sensor_msgs/msg/PointCloud2","messages":3},)"
            R"("/status":{"type":"std_msgs/msg/String","messages":2},)"
            R"("/rear":{"type":"sensor_msgs/msg/PointCloud2","messages":3}},"frames":[)"
            R"({"topic":"/front","stamp":1,"points":3},{"topic":"/rear","stamp":1,"points":1},)"
            R"({"topic":"/front","stamp":1.1,"points":3},{"topic":"/rear","stamp":1.2,"points":1},)"
            R"({"topic":"/front","stamp":1.2,"points":3},{"topic":"/rear","stamp":1.4,"points":1}]})"
            "\n");
}

TEST_F(Info, SaysWhereARecordingWasCut) {
  const std::string whole = asMcap(drive());
  const std::size_t last = whole.rfind(asCdr(floatCloud({{5, 5, 0.5}}, second + 2 * second / 5)));
  ASSERT_NE(last, std::string::npos);
  folder_.write("cut.mcap", whole.substr(0, last + 20));
  const Outcome outcome = info({"cut.mcap"});
  EXPECT_EQ(outcome.code, 4);
  EXPECT_EQ(outcome.out.substr(0, outcome.out.find("  points")),
            "cut.mcap\n"
            "  kind        mcap\n"
            "  topic       /front (sensor_msgs/msg/PointCloud2): 3 messages, 10 Hz\n"
            "  topic       /status (std_msgs/msg/String): 1 message\n"
            "  topic       /rear (sensor_msgs/msg/PointCloud2): 2 messages, 5 Hz\n"
            "  frames      5\n"
            "  stamps      1 s to 1.2 s\n");
  const std::size_t header = 22;  // of the message's content
  EXPECT_EQ(outcome.err, "zone-detector: warning: cut.mcap: byte " + std::to_string(last - header - 9) +
                             ": the recording is cut off: a message needs " +
                             std::to_string(header + asCdr(floatCloud({{5, 5, 0.5}}, 0)).size()) +
                             " bytes and has " + std::to_string(header + 20) +
                             "; what comes before it was read\n");
}

TEST_F(Info, OfARecordingWithoutCloudsNamesItsTopics) {
  WrittenRecording recording;
  recording.topics = {{"/status", "std_msgs/msg/String"}};
  recording.messages = {{0, 0, "a"}, {0, second, "b"}};
  const std::string whole = asMcap(recording);
  folder_.write("talk.mcap", whole);
  const Outcome outcome = info({"talk.mcap"});
  EXPECT_EQ(outcome.code, 0);
  const std::string reason =
      "zone-detector: warning: talk.mcap: the recording holds no point clouds (sensor_msgs/msg/PointCloud2); "
      "it has /status (std_msgs/msg/String, ";
  EXPECT_EQ(outcome.err, reason + "2 messages, 1 Hz)\n");
  EXPECT_EQ(outcome.out,
            "talk.mcap\n"
            "  kind        mcap\n"
            "  topic       /status (std_msgs/msg/String): 2 messages, 1 Hz\n"
            "  frames      0\n"
            "  points      0, 0 no returns, 0 at (0, 0, 0)\n"
            "  columns     none\n");

  // What was cut off may have had clouds.
  const std::size_t header = 9 + 22;
  const std::size_t last = whole.find('b', whole.find("/status"));
  folder_.write("talk.mcap", whole.substr(0, last));
  const Outcome cut = info({"talk.mcap"});
  EXPECT_EQ(cut.code, 4);
  EXPECT_EQ(cut.err,
            reason + "1 message)\nzone-detector: warning: talk.mcap: byte " + std::to_string(last - header) +
                ": the recording is cut off: a message needs 23 bytes and has 22; what comes before it "
                "was read\n");
}

TEST_F(Info, SaysHowFarStampsGoBack) {
  WrittenRecording recording;
  recording.topics = {{"/front"}};
  for (const std::int64_t stamp : {2 * second, second, second / 2, 3 * second, 5 * second / 2}) {
    recording.messages.push_back(cloudMessage(0, stamp, 0, {{1, 1, 1}}));
  }
  folder_.write("back.mcap", asMcap(recording));
  const Outcome outcome = info({"back.mcap"});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_NE(outcome.out.find("): 5 messages, 1.6 Hz\n"), std::string::npos) << outcome.out;
  EXPECT_EQ(outcome.err, "zone-detector: warning: back.mcap: stamps go back 3 times, by at most 1 s\n");
}

TEST_F(Info, PrintsABlankLineBetweenFilesAndEndsWithTheWorstOfThem) {
  folder_.write("a.xyz", "1 1 1\n");
  const std::string whole = asMcap(drive());
  folder_.write("cut.mcap", whole.substr(0, whole.size() / 2));
  const std::string a = info({"a.xyz"}).out;
  EXPECT_EQ(info({"a.xyz", "a.xyz"}).out, a + "\n" + a);
  EXPECT_EQ(info({"cut.mcap", "a.xyz"}).code, 4);
  EXPECT_EQ(info({"cut.mcap", "missing.xyz"}).code, 1);
  EXPECT_EQ(info({"missing.xyz", "cut.mcap"}).code, 1);
}

// Each topic is looked up by its name: a search through all of them would take minutes.
TEST_F(Info, ReadsARecordingOfManyTopics) {
  constexpr std::size_t count = 20'000;
  WrittenRecording recording;
  for (std::size_t i = 0; i < count; ++i) {
    recording.topics.push_back({"/lidar_" + std::to_string(i)});
    recording.messages.push_back(
        cloudMessage(i, static_cast<std::int64_t>(i), static_cast<std::int64_t>(i), {{1, 1, 1}}));
  }
  folder_.write("many.mcap", asMcap(recording));
  const Outcome outcome = info({"many.mcap"});
  EXPECT_EQ(outcome.code, 0) << outcome.err;
  EXPECT_NE(outcome.out.find("  topic       /lidar_19999 (sensor_msgs/msg/PointCloud2): 1 message\n"),
            std::string::npos);
  EXPECT_NE(outcome.out.find("  frames      20000\n"), std::string::npos);
}

}  // namespace
}  // namespace orvantis::testing
