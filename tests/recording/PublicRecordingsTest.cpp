// The recordings that developers keep beside the repository, with the answers that other readers gave.

#include <cmath>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include <boost/property_tree/json_parser.hpp>
#include <boost/property_tree/ptree.hpp>
#include <gtest/gtest.h>

#include "ByteText.h"
#include "FrameFiles.h"
#include "ReadRecording.h"
#include "Sha256.h"
#include "files/FileSource.h"
#include "recording/OpenRecording.h"
#include "recording/RecordingContents.h"
#include "recording/RecordingReader.h"

namespace orvantis::toolkit {
namespace {

using boost::property_tree::ptree;

const std::filesystem::path folder =
    std::filesystem::path(ORVANTIS_SOURCE_DIR) / ".." / "shared" / "data" / "readers";

std::string digestOf(const std::string& bytes) {
  return testing::sha256({bytes.begin(), bytes.end()});
}

// As the answers have it: doubles, with one way to write that there is no number.
std::string digestOf(const std::vector<testing::Point3>& points) {
  std::string bytes;
  for (const testing::Point3& point : points) {
    for (const double value : point) {
      bytes += testing::bytesOf(std::isnan(value) ? std::numeric_limits<double>::quiet_NaN() : value);
    }
  }
  return digestOf(bytes);
}

std::string kindText(RecordingKind kind) {
  return kind == RecordingKind::mcap ? "mcap" : "bag";
}

// All that the answers say of a message, in one line.
std::string lineOf(const ptree& cloud) {
  std::string line = cloud.get<std::string>("topic");
  for (const char* key : {"log_time_ns", "stamp_ns", "frame_id", "width", "height", "points", "sha256_f64"}) {
    line += " " + cloud.get<std::string>(key);
  }
  for (const auto& [unused, field] : cloud.get_child("fields")) {
    line += " " + field.front().second.data() + "*" + field.back().second.data();
  }
  return line;
}

std::string lineOf(const RecordedCloud& cloud) {
  const std::vector<testing::Point3> points = testing::pointsOf(cloud.points);
  std::string line(cloud.topic);
  line += " " + std::to_string(cloud.logged.count()) + " " + std::to_string(cloud.header.count()) + " " +
          std::string(cloud.frameId) + " " + std::to_string(cloud.width) + " " +
          std::to_string(cloud.height) + " " + std::to_string(points.size()) + " " + digestOf(points);
  for (const Column& column : cloud.columns) {
    line += " " + column.name + "*" + std::to_string(column.count);
  }
  return line;
}

std::vector<std::string> linesOf(RecordingReader& reader) {
  std::vector<std::string> lines;
  while (const auto cloud = reader.next()) {
    lines.push_back(lineOf(*cloud));
  }
  return lines;
}

// The bytes of the messages themselves, and the counts of all topics.
void checkMessages(ByteSource& source, const ptree& tree) {
  const OpenRecording opened = openRecording(source, builtInDecoders());
  EXPECT_EQ(kindText(opened.kind), tree.get<std::string>("kind"));
  std::vector<std::string> digests;
  while (const auto message = opened.messages->next()) {
    if (opened.messages->topics()[message->topic].cloud != CloudEncoding::none) {
      digests.push_back(digestOf(testing::textOf(message->data)));
    }
  }
  std::vector<std::string> expected;
  for (const auto& [unused, cloud] : tree.get_child("clouds")) {
    expected.push_back(cloud.get<std::string>("sha256_message"));
  }
  EXPECT_EQ(digests, expected);
  std::size_t numTopics = 0;
  for (const Topic& topic : opened.messages->topics()) {
    if (topic.read == 0) {
      continue;  // declared, and never used
    }
    ++numTopics;
    const ptree& answer = tree.get_child("topics").get_child(ptree::path_type(topic.name, '\n'));
    EXPECT_EQ(topic.type, answer.get<std::string>("type"));
    EXPECT_EQ(topic.read, answer.get<std::uint64_t>("messages"));
    EXPECT_EQ(topic.messages.value_or(topic.read), topic.read);
  }
  EXPECT_EQ(numTopics, tree.get_child("topics").size());
}

void checkClouds(ByteSource& source, const ptree& tree) {
  std::vector<std::string> expected;
  RecordingOptions options;
  for (const auto& [unused, cloud] : tree.get_child("clouds")) {
    expected.push_back(lineOf(cloud));
    options.topics.insert(cloud.get<std::string>("topic"));
  }
  RecordingReader reader(source, options);
  EXPECT_EQ(linesOf(reader), expected);
  EXPECT_FALSE(reader.damage());
  EXPECT_EQ(reader.stampsBack().count, 0U);
}

TEST(PublicRecordings, GiveTheMessagesThatOtherReadersGive) {
  if (!std::filesystem::exists(folder / "expected.json")) {
    GTEST_SKIP() << "there is no " << folder.lexically_normal().filename() << " beside the repository";
  }
  ptree expected;
  read_json((folder / "expected.json").string(), expected);
  std::size_t numRead = 0;
  for (const auto& [name, tree] : expected) {
    if (!name.starts_with("bag/") && !name.starts_with("mcap/")) {
      continue;
    }
    SCOPED_TRACE(name);
    ++numRead;
    FileSource source((folder / name).string());
    EXPECT_TRUE(isRecording(source.bytes(0, 16)));
    checkMessages(source, tree);
    if (tree.get<std::string>("verdict") == "read") {
      checkClouds(source, tree);
      continue;
    }
    const testing::ReadRecording result = testing::readRecording(source);
    EXPECT_TRUE(result.refusal.starts_with(
        "byte 0: the recording holds no point clouds (sensor_msgs/msg/PointCloud2); it has "))
        << result.refusal;
  }
  EXPECT_EQ(numRead, 14U);
}

}  // namespace
}  // namespace orvantis::toolkit
