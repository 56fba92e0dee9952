#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Documents.h"
#include "document/SensorList.h"

namespace orvantis::toolkit::testing {
namespace {

// Each finding as "line:column id path: text".
Texts findingsOf(const std::string& json) {
  Texts texts;
  for (const Finding& finding : checkSensors(json).findings) {
    texts.push_back(std::to_string(finding.at.line) + ":" + std::to_string(finding.at.column) + " " +
                    std::string(idOf(finding.kind)) + " " + finding.path + ": " + finding.text);
  }
  return texts;
}

std::string sensor(const std::string& keys) {
  return R"({"sensors":[{"name":"a",)" + keys + "}]}";
}

TEST(SensorList, HoldsWhatItSays) {
  const CheckedSensorList list = checkSensors(R"({"sensors": [
    {"name": "front", "pose": {"x": 1, "y": -2.5, "z": 4, "roll": 0, "pitch": 20, "yaw": 90}, "files": ["f", "g/*"]},
    {"name": "rear", "topic": "/rear", "files": ["drive.mcap"]},
    {"name": "mast", "topic": "/mast"}]})");
  EXPECT_TRUE(list.findings.empty());
  ASSERT_EQ(list.sensors.size(), 3U);
  EXPECT_EQ(list.sensors[0].name, "front");
  EXPECT_EQ(list.sensors[0].pose, (std::array<double, 6>{1, -2.5, 4, 0, 20, 90}));
  EXPECT_EQ(list.sensors[0].files, (Texts{"f", "g/*"}));
  EXPECT_EQ(list.sensors[0].topic, "");
  EXPECT_EQ(list.sensors[1].pose, std::nullopt);
  EXPECT_EQ(list.sensors[1].files, Texts{"drive.mcap"});
  EXPECT_EQ(list.sensors[1].topic, "/rear");
  EXPECT_TRUE(list.sensors[2].files.empty());
}

TEST(SensorList, IsAnObjectWithSensors) {
  EXPECT_EQ(findingsOf("[]"),
            Texts{"1:1 wrong-type : a list stands where an object with \"sensors\" belongs"});
  EXPECT_EQ(findingsOf("7"), Texts{"1:1 wrong-type : 7 stands where an object with \"sensors\" belongs"});
  EXPECT_EQ(findingsOf("{}"),
            Texts{"1:1 missing-key : \"sensors\" is missing; give a list of 1 to 64 sensors"});
  EXPECT_EQ(findingsOf(R"({"sensors":[]})"),
            Texts{"1:2 wrong-type sensors: an empty list stands where a list of 1 to 64 sensors belongs"});
  EXPECT_EQ(findingsOf(R"({"sensor":[3]})"),
            Texts{"1:2 misspelt-key sensor: unknown key; did you mean \"sensors\"?"});
  EXPECT_EQ(findingsOf("{\"sensors\":[\n3]}"),
            Texts{"2:1 wrong-type sensors[0]: 3 stands where an object with \"name\" belongs"});
  EXPECT_TRUE(checkSensors("{}").sensors.empty());
}

TEST(SensorList, ThatIsNotJsonIsToldWithItsPlace) {
  EXPECT_EQ(findingsOf("{\n\"sensors\": [,]}"), Texts{"2:13 json-fault : a comma too many; remove it"});
  EXPECT_EQ(findingsOf(std::string(documentSizeLimit, ' ')),
            Texts{"1:1 too-large : the list of sensors is too large; give it fewer than 102400 bytes"});
}

TEST(SensorList, EachSensorHasANameOfItsOwn) {
  EXPECT_EQ(findingsOf(R"({"sensors":[{"topic":"t"}]})"),
            Texts{"1:13 missing-key sensors[0]: \"name\" is missing; give a text"});
  EXPECT_EQ(findingsOf(R"({"sensors":[{"name":"","topic":"t"}]})"),
            Texts{"1:21 wrong-type sensors[0]/name: is empty; give a text of at least one character"});
  EXPECT_EQ(findingsOf("{\"sensors\":[{\"name\":\"a\",\"topic\":\"t\"},\n{\"name\":\"a\",\"topic\":\"u\"}]}"),
            Texts{"2:9 repeated-key sensors[1]/name: name \"a\" is already used in line 1"});
  EXPECT_EQ(findingsOf(R"({"sensors":[{"name":{},"topic":"t"}]})"),
            Texts{"1:21 wrong-type sensors[0]/name: an object stands where a text belongs"});
}

TEST(SensorList, EachSensorSaysWhereItsFramesComeFrom) {
  EXPECT_EQ(
      findingsOf(R"({"sensors":[{"name":"a"}]})"),
      Texts{"1:13 missing-key sensors[0]: \"files\" and \"topic\" are both missing; give its frames, or its "
            "topic in the recordings of the command line"});
  EXPECT_EQ(findingsOf(sensor(R"("topics":"t")")),
            Texts{"1:25 misspelt-key sensors[0]/topics: unknown key; did you mean \"topic\"?"});
  EXPECT_EQ(findingsOf(sensor(R"("files":[])")), Texts{"1:25 wrong-type sensors[0]/files: an empty list "
                                                       "stands where a list of files and folders belongs"});
  EXPECT_EQ(findingsOf(sensor(R"("topic":"","files":["a",""])")),
            (Texts{"1:33 wrong-type sensors[0]/topic: is empty; give a text of at least one character",
                   "1:49 wrong-type sensors[0]/files[1]: is empty; give a text of at least one character"}));
  EXPECT_EQ(findingsOf(sensor(R"("files":"one.pcd")")), Texts{});
}

TEST(SensorList, APoseIsSixNumbers) {
  const auto pose = [](const std::string& text) { return sensor(R"("topic":"t","pose":)" + text); };
  EXPECT_EQ(findingsOf(pose(R"({"x":0,"y":0,"z":0,"roll":0,"pitch":0})")),
            Texts{"1:44 missing-key sensors[0]/pose: \"yaw\" is missing; give a number (degrees)"});
  EXPECT_EQ(findingsOf(pose(R"({"x":0,"y":0,"z":"up","roll":0,"pitch":0,"yaw":1e999})")),
            (Texts{"1:61 wrong-type sensors[0]/pose/z: \"up\" stands where a number (m) belongs",
                   "1:91 wrong-type sensors[0]/pose/yaw: 1e999 stands where a number (degrees) belongs"}));
  EXPECT_EQ(findingsOf(pose("7")).front(),
            "1:44 wrong-type sensors[0]/pose: 7 stands where an object with \"x\", \"y\", \"z\", \"roll\", "
            "\"pitch\" and \"yaw\" belongs");
}

// What is not read is told; it does no harm.
TEST(SensorList, UnknownKeysAreWarnings) {
  const CheckedSensorList list = checkSensors(sensor(R"("topic":"t","colour":"red","zMin":1)"));
  ASSERT_EQ(list.findings.size(), 2U);
  EXPECT_EQ(list.findings[0].text, "unknown key; nothing reads it");
  EXPECT_EQ(list.findings[1].text, "unknown key; nothing reads it");
  EXPECT_EQ(countOf(list.findings, Severity::Error), 0U);
  EXPECT_EQ(list.sensors.size(), 1U);
}

TEST(SensorList, HasAtMost64Sensors) {
  std::string text = R"({"sensors":[{"name":"0","topic":"t"})";
  for (int i = 1; i < 64; ++i) {
    text += R"(,{"name":")" + std::to_string(i) + R"(","topic":"t"})";
  }
  EXPECT_EQ(checkSensors(text + "]}").sensors.size(), 64U);
  EXPECT_EQ(findingsOf(text + R"(,{"name":"64","topic":"t"}]})").front().substr(5),
            "7 too-many sensors[64]: 65 sensors; at most 64 are allowed");
}

TEST(Document, HoldsItsSensorBoundZones) {
  const std::string zone = R"({"name":"Bound","id":"00000000-0000-0000-0000-00000000000)";
  const CheckedDocument document =
      check(R"({"Zone3d":[)" + zone + R"(1","zMin":0.5,"zMax":2,"Sensors":{"lidar":["b","a"]},)" + triangle +
            "}," + zone + R"(2","enabled":false,"zMin":0,"zMax":2,)" + disc + "}]}");
  ASSERT_TRUE(document.configuration);
  const auto& zones = document.configuration->sensorZones;
  ASSERT_EQ(zones.size(), 2U);
  EXPECT_EQ(zones[0]->getSpecificSensors(), (std::set<std::string>{"a", "b"}));
  EXPECT_EQ(zones[0]->getZMin(), 0.5);
  EXPECT_TRUE(zones[0]->enabled());
  EXPECT_EQ(zones[0]->getName(), "Bound");
  EXPECT_FALSE(zones[1]->enabled());
  EXPECT_TRUE(zones[1]->getSpecificSensors().empty());
}

}  // namespace
}  // namespace orvantis::toolkit::testing
