#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Program.h"
#include "WrittenCloud.h"
#include "WrittenRecording.h"
#include "support/TemporaryFolder.h"

// `plot` and `new` take one frame, and read it as `run` does.

namespace orvantis::testing {
namespace {

const char* const document = R"({"ZoneDetector":{"version":"1.1","EvaluationField":[
  {"name":"Yard","index":0,"Zone":[{"name":"Box","index":0,"zMin":0,"zMax":2,"shape":"rectangle",
    "Rectangle":{"rotation":0,"Point":[{"x":0,"y":0},{"x":10,"y":10}]}}]}]}})";

std::string recordsOf(const std::vector<std::vector<float>>& rows) {
  std::string bytes;
  for (const std::vector<float>& row : rows) {
    bytes.append(reinterpret_cast<const char*>(row.data()), row.size() * sizeof(float));
  }
  return bytes;
}

class FirstFrame : public ::testing::Test {
 protected:
  FirstFrame() {
    folder_.write("site.json", document);
    folder_.write("here.xyz", "1 2 1\n3 4 1\n5 6 1\n7 8 9\n");
  }

  Outcome run(std::vector<std::string> arguments) const { return zoneDetector(arguments, folder_.path()); }

  // The dots of the picture, which names what it lies over.
  std::string plan(std::vector<std::string> arguments, const std::string& over) const {
    arguments.insert(arguments.begin(), {"plot", "site.json"});
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_NE(outcome.out.find(">site.json over " + over + "<"), std::string::npos) << over;
    std::string dots;
    std::istringstream lines(outcome.out);
    for (std::string line; std::getline(lines, line);) {
      dots += line.rfind("<path d=\"M0 0m", 0) == 0 ? line + "\n" : "";
    }
    EXPECT_NE(dots, "");
    return dots;
  }

  std::string created(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "new");
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.err, "");
    return outcome.out;
  }

  TemporaryFolder folder_;
};

TEST_F(FirstFrame, HasTheColumnsThatAreGiven) {
  folder_.write("five.bin", recordsOf({{1, 2, 1, 7, 0}, {3, 4, 1, 7, 0}, {5, 6, 1, 7, 0}, {7, 8, 9, 7, 0}}));
  for (const std::vector<std::string>& command :
       {std::vector<std::string>{"plot", "site.json"}, std::vector<std::string>{"new"}}) {
    std::vector<std::string> arguments = command;
    arguments.push_back("five.bin");
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.code, 1);
    EXPECT_NE(outcome.err.find("--columns"), std::string::npos) << outcome.err;
  }
  EXPECT_EQ(plan({"five.bin", "--columns", "5"}, "five.bin"), plan({"here.xyz"}, "here.xyz"));
  EXPECT_EQ(created({"five.bin", "--columns", "5"}), created({"here.xyz"}));
  EXPECT_NE(created({"five.bin", "--columns", "5"}), created({}));
}

TEST_F(FirstFrame, LiesAtItsPose) {
  folder_.write("there.xyz", "-1 -2 0\n-3 -4 0\n-5 -6 0\n-7 -8 8\n");
  const std::vector<std::string> posed = {"there.xyz", "--pose", "0,0,1,0,0,180"};
  EXPECT_EQ(plan(posed, "there.xyz"), plan({"here.xyz"}, "here.xyz"));
  EXPECT_EQ(created(posed), created({"here.xyz"}));
}

TEST_F(FirstFrame, HasWhatIsNotLeftOut) {
  folder_.write("more.xyz", "1 2 1\n0 0 0\n3 4 1\n5 6 1\n90 90 1\n7 8 9\n0.1 0 0\n");
  const std::vector<std::string> some = {"more.xyz", "--drop-origin", "--min-range",
                                         "1",        "--max-range",   "50"};
  EXPECT_EQ(plan(some, "more.xyz"), plan({"here.xyz"}, "here.xyz"));
  EXPECT_EQ(created(some), created({"here.xyz"}));
}

TEST_F(FirstFrame, OfARecordingIsThatOfItsTopic) {
  WrittenRecording recording;
  recording.topics.push_back({"/front"});
  recording.topics.push_back({"/rear"});
  recording.messages.push_back({0, 1000, asCdr(floatCloud({{100, 100, 100}}, 1000))});
  recording.messages.push_back(
      {1, 2000, asCdr(floatCloud({{1, 2, 1}, {3, 4, 1}, {5, 6, 1}, {7, 8, 9}}, 2000))});
  recording.messages.push_back({1, 3000, asCdr(floatCloud({{100, 100, 100}}, 3000))});
  folder_.write("drive.mcap", asMcap(recording));
  const std::vector<std::string> rear = {"drive.mcap", "--topic", "/rear"};
  EXPECT_EQ(plan(rear, "drive.mcap"), plan({"here.xyz"}, "here.xyz"));
  EXPECT_EQ(created(rear), created({"here.xyz"}));
}

TEST_F(FirstFrame, OfSensorsIsThatOfAllOfThem) {
  folder_.write("front.xyz", "1 2 1\n3 4 1\n");
  folder_.write("rear.xyz", "-5 -6 0\n-7 -8 8\n");
  folder_.write("sensors.json", R"({"sensors":[{"name":"front","files":["front.xyz"]},
    {"name":"rear","pose":{"x":0,"y":0,"z":1,"roll":0,"pitch":0,"yaw":180},"files":["rear.xyz"]}]})");
  EXPECT_EQ(plan({"--sensors", "sensors.json"}, "sensors.json"), plan({"here.xyz"}, "here.xyz"));
  EXPECT_EQ(created({"--sensors", "sensors.json"}), created({"here.xyz"}));
}

TEST_F(FirstFrame, OfSensorsMayBeInSeveralRecordings) {
  const auto write = [this](const std::string& path, const std::string& topic,
                            const std::vector<Point3>& points) {
    WrittenRecording recording;
    recording.topics.push_back({topic});
    recording.messages.push_back({0, 1000, asCdr(floatCloud(points, 1000))});
    folder_.write(path, asMcap(recording));
  };
  write("front.mcap", "/front", {{1, 2, 1}, {3, 4, 1}});
  write("rear.mcap", "/rear", {{5, 6, 1}, {7, 8, 9}});
  folder_.write("sensors.json", R"({"sensors":[{"name":"front","files":["front.mcap"]},
    {"name":"rear","files":["rear.mcap"]}]})");
  folder_.write("topics.json", R"({"sensors":[{"name":"front","topic":"/front"}]})");
  EXPECT_EQ(plan({"--sensors", "sensors.json"}, "sensors.json"), plan({"here.xyz"}, "here.xyz"));
  folder_.write("two.xyz", "1 2 1\n3 4 1\n");
  EXPECT_EQ(plan({"front.mcap", "front.mcap", "--sensors", "topics.json"}, "topics.json"),
            plan({"two.xyz"}, "two.xyz"));
}

TEST_F(FirstFrame, OfAFolderIsThatOfItsFirstFileOrOfEach) {
  std::filesystem::create_directory(folder_.path("set"));
  folder_.write("set/f2.xyz", "3 4 1\n5 6 1\n7 8 9\n");
  folder_.write("set/f10.xyz", "1 2 1\n");
  folder_.write("first.xyz", "3 4 1\n5 6 1\n7 8 9\n");
  EXPECT_EQ(plan({"set"}, "f2.xyz"), plan({"first.xyz"}, "first.xyz"));
  EXPECT_EQ(created({"set"}), created({"here.xyz"}));
  EXPECT_NE(created({"set"}), created({"first.xyz"}));
}

TEST_F(FirstFrame, MustBeThere) {
  WrittenRecording recording;
  recording.topics.push_back({"/front"});
  recording.messages.push_back({0, 1000, asCdr(floatCloud(std::vector<Point3>(1000, {1, 1, 1}), 1000))});
  const std::string whole = asMcap(recording);
  folder_.write("drive.mcap", whole.substr(0, whole.size() / 2));
  folder_.write("sensors.json", R"({"sensors":[{"name":"front","files":["drive.mcap"]}]})");
  for (const std::vector<std::string>& arguments :
       std::vector<std::vector<std::string>>{{"plot", "site.json", "drive.mcap"},
                                             {"new", "drive.mcap"},
                                             {"plot", "site.json", "--sensors", "sensors.json"},
                                             {"new", "--sensors", "sensors.json"}}) {
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.code, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(
        outcome.err,
        "zone-detector: drive.mcap: cannot be read: byte 140: the recording is cut off: a message needs "
        "16163 bytes and has 8113; no whole point cloud comes before\n");
  }
}

TEST_F(FirstFrame, UsageIsTold) {
  const auto error = [this](const std::vector<std::string>& arguments) {
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.code, 2);
    return outcome.err.substr(0, outcome.err.find('\n'));
  };
  EXPECT_EQ(error({"plot", "site.json", "a.xyz", "b.xyz"}),
            "zone-detector: CLOUD can be given once, because the plan lies over one frame");
  EXPECT_EQ(error({"plot", "-", "-"}), "zone-detector: only one input can be -, the standard input");
  EXPECT_EQ(error({"new", "-", "--sensors", "-"}),
            "zone-detector: only one input can be -, the standard input");
}

TEST_F(FirstFrame, ThePictureDoesNotTakeThePlaceOfTheListOfSensors) {
  const std::string sensors = R"({"sensors":[{"name":"front","files":["here.xyz"]}]})";
  folder_.write("sensors.svg", sensors);
  EXPECT_EQ(run({"plot", "site.json", "--sensors", "sensors.svg", "-o", "sensors.svg"}).err,
            "zone-detector: sensors.svg: cannot be written: the picture is drawn from it\n");
  EXPECT_EQ(readAll(folder_.path("sensors.svg")), sensors);
}

}  // namespace
}  // namespace orvantis::testing
