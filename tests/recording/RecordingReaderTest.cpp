#include <cstddef>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include <gtest/gtest.h>

#include "ByteText.h"
#include "Compressors.h"
#include "ReadRecording.h"
#include "RecordingSamples.h"
#include "WrittenCloud.h"
#include "WrittenRecording.h"
#include "points/PointAt.h"
#include "recording/ReadError.h"
#include "recording/RecordingReader.h"

namespace orvantis::toolkit {
namespace {

using testing::asBag;
using testing::asCdr;
using testing::asMcap;
using testing::BagForm;
using testing::floatCloud;
using testing::McapForm;
using testing::ReadRecording;
using testing::WrittenRecording;

constexpr std::uint64_t second = 1'000'000'000;

std::string cloudOf(std::int64_t stamp) {
  return asCdr(floatCloud({{1, 2, 3}}, stamp));
}

// Two topics of clouds, the second from the third message on, and one that holds none.
WrittenRecording twoSensors() {
  WrittenRecording recording;
  recording.topics = {{"/front"}, {"/rear"}, {"/tf", "tf2_msgs/msg/TFMessage"}, {"/old"}};
  recording.messages = {{2, 0, "tf"},
                        {0, second, cloudOf(1)},
                        {0, 2 * second, cloudOf(2)},
                        {1, 2 * second, cloudOf(2)},
                        {0, 3 * second, cloudOf(3)}};
  return recording;
}

McapForm withoutIndex() {
  McapForm form;
  form.hasStatistics = false;
  form.hasSummary = false;
  form.hasMessageIndexes = false;
  return form;
}

RecordingOptions choosing(TopicNames topics) {
  RecordingOptions options;
  options.topics = std::move(topics);
  return options;
}

std::vector<std::string> topicsOf(const ReadRecording& result) {
  std::vector<std::string> topics;
  for (const testing::ReadCloud& cloud : result.clouds) {
    topics.push_back(cloud.topic);
  }
  return topics;
}

constexpr const char* mustChoose =
    "byte 0: the recording has point clouds of 2 topics; choose with --topic: "
    "/front (sensor_msgs/msg/PointCloud2, 3 messages, ";

TEST(RecordingReader, AsksForAChoiceAmongSeveralTopics) {
  const ReadRecording result = testing::readRecording(asMcap(twoSensors()));
  EXPECT_TRUE(result.clouds.empty());
  // Over the time of the whole recording, as the index has it.
  EXPECT_EQ(result.refusal,
            mustChoose + std::string("0.67 Hz), /rear (sensor_msgs/msg/PointCloud2, 1 message)"));
}

TEST(RecordingReader, AsksWhenTheSecondTopicComesWithoutAnIndex) {
  const ReadRecording result = testing::readRecording(asMcap(twoSensors(), withoutIndex()));
  EXPECT_EQ(result.clouds.size(), 2U);
  EXPECT_EQ(result.refusal,
            mustChoose + std::string("1 Hz), /rear (sensor_msgs/msg/PointCloud2, 1 message)"));
  EXPECT_EQ(result.damage, "");
  const ReadRecording folded = testing::readRecording(testing::zstdOf(asMcap(twoSensors())));
  EXPECT_EQ(folded.clouds.size(), 2U);
  EXPECT_EQ(folded.refusal, result.refusal);
}

TEST(RecordingReader, TakesTheChosenTopicsInTheOrderOfTheFile) {
  for (const McapForm& form : {McapForm(), withoutIndex()}) {
    const std::string bytes = asMcap(twoSensors(), form);
    using Names = std::vector<std::string>;
    EXPECT_EQ(topicsOf(testing::readRecording(bytes, choosing({"/rear"}))), (Names{"/rear"}));
    EXPECT_EQ(topicsOf(testing::readRecording(bytes, choosing({"/rear", "/front"}))),
              (Names{"/front", "/front", "/rear", "/front"}));
  }
}

TEST(RecordingReader, SaysWhichTopicsThereAre) {
  const std::string tf = "/tf (tf2_msgs/msg/TFMessage, 1 message)";
  for (const McapForm& form : {McapForm(), withoutIndex()}) {
    const std::string bytes = asMcap(twoSensors(), form);
    const std::string rate = form.hasStatistics ? "0.67 Hz" : "1 Hz";
    const std::string all = "/front (sensor_msgs/msg/PointCloud2, 3 messages, " + rate +
                            "), /rear (sensor_msgs/msg/PointCloud2, 1 message), " + tf +
                            ", /old (sensor_msgs/msg/PointCloud2, 0 messages)";
    EXPECT_EQ(testing::readRecording(bytes, choosing({"/points\n"})).refusal,
              "byte 0: the recording has no topic /points\\x0a; it has " + all);
    EXPECT_EQ(testing::readRecording(bytes, choosing({"/front", "/tf"})).refusal,
              "byte 0: topic /tf holds no point clouds; the recording has " + all);
    EXPECT_EQ(testing::readRecording(bytes, choosing({"/old"})).refusal,
              "byte 0: the chosen topics hold no messages; the recording has " + all);
  }
}

TEST(RecordingReader, SaysThatThereAreNoClouds) {
  WrittenRecording recording;
  recording.topics = {{"/points", "sensor_msgs/msg/PointCloud2", "json"}, {"/x", "", "cdr"}};
  recording.messages = {{0, 1, "{}"}, {1, 2, "?"}, {1, second + 2, "?"}};
  for (const McapForm& form : {McapForm(), withoutIndex()}) {
    EXPECT_EQ(testing::readRecording(asMcap(recording, form)).refusal,
              "byte 0: the recording holds no point clouds (sensor_msgs/msg/PointCloud2); it has "
              "/points (sensor_msgs/msg/PointCloud2 as json, 1 message), /x (no type, 2 messages, 1 Hz)");
  }
  EXPECT_EQ(testing::readRecording(asMcap({})).refusal,
            "byte 0: the recording holds no point clouds (sensor_msgs/msg/PointCloud2); it has no topics");
  EXPECT_EQ(testing::readRecording(asBag({})).refusal, testing::readRecording(asMcap({})).refusal);
}

TEST(RecordingReader, SaysHowToUnfoldCompressedClouds) {
  WrittenRecording recording;
  recording.topics = {{"/points/draco", "point_cloud_interfaces/msg/CompressedPointCloud2"}};
  recording.messages = {{0, 1, "..."}};
  EXPECT_EQ(
      testing::readRecording(asMcap(recording)).refusal,
      "byte 0: the recording holds no point clouds (sensor_msgs/msg/PointCloud2); it has "
      "/points/draco (point_cloud_interfaces/msg/CompressedPointCloud2, 1 message); unfold the clouds of "
      "/points/draco first: ros2 run point_cloud_transport republish");
}

TEST(RecordingReader, ListsNoMoreThanTwentyTopics) {
  WrittenRecording recording;
  for (int i = 0; i < 22; ++i) {
    recording.topics.push_back({"/t" + std::to_string(i), "some/Type"});
  }
  const std::string refusal = testing::readRecording(asMcap(recording)).refusal;
  EXPECT_TRUE(refusal.ends_with(", /t19 (some/Type, 0 messages) and 2 more")) << refusal;
}

TEST(RecordingReader, TakesTheStampThatIsAskedFor) {
  WrittenRecording recording;
  recording.topics = {{"/points"}};
  recording.messages = {{0, 77, cloudOf(55)}};
  const std::string bytes = asMcap(recording);
  MemorySource source(testing::viewOf(bytes));
  RecordingReader reader(source);
  const auto cloud = reader.next();
  ASSERT_TRUE(cloud);
  EXPECT_EQ(cloud->stamp.count(), 55);
  EXPECT_EQ(cloud->header.count(), 55);
  EXPECT_EQ(cloud->logged.count(), 77);
  RecordingOptions options;
  options.stampFrom = StampFrom::log;
  RecordingReader other(source, options);
  EXPECT_EQ(other.next()->stamp.count(), 77);
}

TEST(RecordingReader, CountsStampsThatGoBack) {
  WrittenRecording recording;
  recording.topics = {{"/a"}, {"/b"}};
  const std::int64_t stamps[] = {100, 50, 200, 60,
                                 150, 60, 140, 300};  // /a and /b in turn; /b stands still once
  for (std::size_t i = 0; i < 8; ++i) {
    recording.messages.push_back({i % 2, i, cloudOf(stamps[i])});
  }
  const ReadRecording result = testing::readRecording(asMcap(recording), choosing({"/a", "/b"}));
  EXPECT_EQ(result.clouds.size(), 8U);
  EXPECT_EQ(result.stampsBack.count, 2U);
  EXPECT_EQ(result.stampsBack.most.count(), 50);
  RecordingOptions options = choosing({"/a", "/b"});
  options.stampFrom = StampFrom::log;
  EXPECT_EQ(testing::readRecording(asMcap(recording), options).stampsBack.count, 0U);
}

TEST(RecordingReader, SeesPointsWhereTheyAre) {
  const std::string bytes = asMcap(testing::mcapSample());
  MemorySource source(testing::viewOf(bytes));
  RecordingReader reader(source);
  EXPECT_EQ(reader.kind(), RecordingKind::mcap);
  const auto cloud = reader.next();
  const auto& view = std::get<filter::classify::PointsView<float>>(cloud->points);
  const char* const x = static_cast<const char*>(view.x);
  EXPECT_TRUE(x > bytes.data() && x < bytes.data() + bytes.size());
  EXPECT_EQ(view.stride, 16U);
  EXPECT_EQ(cloud->height, 1U);
  EXPECT_EQ(cloud->width, 5U);
  ASSERT_EQ(cloud->columns.size(), 4U);
  EXPECT_EQ(cloud->columns[3].name, "intensity");
}

TEST(RecordingReader, GivesAnotherColumnOfTheCloudBesideItsPoints) {
  const WrittenRecording recording{{{"/points"}}, {{0, 1, cloudOf(1)}, {0, 2, cloudOf(2)}}};
  const std::string bytes = asMcap(recording);
  MemorySource source(testing::viewOf(bytes));
  RecordingReader reader(source);
  std::size_t read = 0;
  while (const auto cloud = reader.next()) {
    const auto before = std::get<filter::classify::PointsView<float>>(cloud->points);
    const auto beside = std::get<filter::classify::PointsView<float>>(reader.withColumn("intensity"));
    ASSERT_EQ(beside.size, before.size);
    for (std::size_t i = 0; i < beside.size; ++i) {
      EXPECT_EQ(pointAt(beside, i)[0], pointAt(before, i)[0]);
      EXPECT_EQ(pointAt(beside, i)[2], 0.5F);
      EXPECT_NE(pointAt(before, i)[2], 0.5F);
    }
    EXPECT_THROW(reader.withColumn("ring"), ReadError);
    ++read;
  }
  EXPECT_EQ(read, 2U);
}

// The byte of a message is where its record is; of one in a compressed chunk, where the chunk is.
TEST(RecordingReader, SaysWhereACloudIs) {
  const WrittenRecording recording{{{"/points"}}, {{0, 1, cloudOf(1)}, {0, 2, cloudOf(2)}}};
  McapForm form;
  for (const std::size_t chunk : {0U, 2U}) {
    form.messagesInChunk = chunk;
    const std::string bytes = asMcap(recording, form);
    const ReadRecording result = testing::readRecording(bytes);
    const std::size_t first = bytes.find(recording.messages[0].data) - 31;
    const std::size_t next = bytes.find(recording.messages[1].data) - 31;
    EXPECT_EQ(result.clouds[0].place, first);
    EXPECT_EQ(result.clouds[1].place, next);
  }
  form.compression = "zstd";
  const std::string bytes = asMcap(recording, form);
  const ReadRecording result = testing::readRecording(bytes);
  EXPECT_EQ(bytes[result.clouds[0].place], '\x06');
  EXPECT_EQ(result.clouds[0].place, result.clouds[1].place);
}

TEST(RecordingReader, ReadsMessagesOfTheFirstGenerationInMcap) {
  WrittenRecording recording;
  recording.topics = {{"/points", "sensor_msgs/PointCloud2", "ros1"}};
  recording.messages = {{0, 1, testing::asRos1(floatCloud({{1, 2, 3}}, 9))}};
  EXPECT_EQ(testing::readRecording(asMcap(recording)).clouds.size(), 1U);
  // Not where type and encoding are of different generations: nobody writes that.
  recording.topics[0].type = "sensor_msgs/msg/PointCloud2";
  EXPECT_EQ(testing::readRecording(asMcap(recording)).clouds.size(), 0U);
}

TEST(RecordingReader, TakesChannelsOfOneTopicTogether) {
  WrittenRecording recording;
  recording.topics = {{"/points"}, {"/points"}};
  recording.messages = {{0, 1, cloudOf(1)}, {1, 2, cloudOf(2)}, {0, 3, cloudOf(3)}};
  const ReadRecording result = testing::readRecording(asMcap(recording));
  EXPECT_EQ(result.clouds.size(), 3U);
  EXPECT_EQ(result.refusal + result.damage, "");
  ASSERT_EQ(result.topics.size(), 1U);
  EXPECT_EQ(result.topics[0].messages, 3U);
}

// A name may stand for clouds and for something else.
TEST(RecordingReader, TakesTheCloudsOfATopicWithTwoTypes) {
  for (const std::size_t clouds : {0U, 1U}) {
    WrittenRecording recording;
    recording.topics = {{"/points"}, {"/points"}};
    recording.topics[1 - clouds].type = "std_msgs/msg/String";
    recording.messages = {{clouds, 1, cloudOf(1)}, {1 - clouds, 2, "text"}};
    for (const McapForm& form : {McapForm(), withoutIndex()}) {
      const ReadRecording result = testing::readRecording(asMcap(recording, form), choosing({"/points"}));
      EXPECT_EQ(result.clouds.size(), 1U) << clouds;
      EXPECT_EQ(result.refusal + result.damage, "");
    }
  }
}

TEST(RecordingReader, NeedsNoChoiceForATopicWithoutMessages) {
  WrittenRecording recording;
  recording.topics = {{"/front"}, {"/rear"}};
  recording.messages = {{0, 1, cloudOf(1)}};
  for (const McapForm& form : {McapForm(), withoutIndex()}) {
    const ReadRecording result = testing::readRecording(asMcap(recording, form));
    EXPECT_EQ(topicsOf(result), std::vector<std::string>{"/front"});
    EXPECT_EQ(result.refusal, "");
  }
}

TEST(RecordingReader, TellsKindsByTheirFirstBytes) {
  const auto refusal = [](const std::string& bytes) { return testing::readRecording(bytes).refusal; };
  EXPECT_EQ(refusal(""), "byte 0: this is not a recording; MCAP and ROS bags of version 2.0 can be read");
  EXPECT_EQ(refusal("# .PCD v0.7"), refusal(""));
  EXPECT_EQ(refusal("\x89MCAP1\r\n"), "byte 0: this version of MCAP is not known; version 0 can be read");
  EXPECT_EQ(refusal("#ROSBAG V1.2\n"),
            "byte 0: this version of a ROS bag is not known; version 2.0 can be read");
  EXPECT_EQ(refusal("#ROSRECORD V1.1\n"), refusal("#ROSBAG V1.2\n"));
  EXPECT_EQ(refusal(std::string("SQLite format 3\0...", 19)),
            "byte 0: this is a database; convert it to MCAP with: ros2 bag convert");
  EXPECT_EQ(refusal(testing::zstdOf("some text")), refusal(""));
  EXPECT_EQ(refusal(testing::zstdOf(testing::zstdOf("some text"))), "byte 0: the file is compressed twice");
  EXPECT_EQ(refusal("\x28\xB5\x2F\xFD"), "byte 0: the compressed file is cut off at its byte 4");
}

TEST(RecordingReader, SaysWhatIsARecording) {
  const auto is = [](const std::string& bytes) { return isRecording(testing::viewOf(bytes)); };
  EXPECT_TRUE(is("\x89MCAP0\r\n"));
  EXPECT_TRUE(is("#ROSBAG V2.0\n"));
  EXPECT_TRUE(is("#ROSRECORD V1.1"));
  EXPECT_TRUE(is("SQLite format 3"));
  EXPECT_TRUE(is(testing::zstdOf("")));
  EXPECT_FALSE(is(""));
  EXPECT_FALSE(is("\x89MCA"));
  EXPECT_FALSE(is("# .PCD v0.7"));
  EXPECT_FALSE(is("ply\n"));
}

TEST(RecordingContents, ComeFromTheIndexOrFromReading) {
  for (const McapForm& form : {McapForm(), withoutIndex()}) {
    const std::string bytes = asMcap(twoSensors(), form);
    MemorySource source(testing::viewOf(bytes));
    const RecordingContents contents = readContents(source, builtInDecoders());
    EXPECT_EQ(contents.isFromIndex, form.hasStatistics);
    EXPECT_EQ(contents.kind, RecordingKind::mcap);
    EXPECT_EQ(contents.messages, 5U);
    EXPECT_EQ(contents.first.count(), 0);
    EXPECT_EQ(contents.last.count(), 3'000'000'000);
    EXPECT_FALSE(contents.damage);
    ASSERT_EQ(contents.topics.size(), 4U);
    EXPECT_EQ(contents.topics[0].messages, 3U);
    EXPECT_EQ(contents.topics[2].messages, 1U);
    EXPECT_EQ(contents.topics[3].messages, 0U);
    EXPECT_FALSE(contents.topics[2].rate);
  }
}

// Neither the first nor the last topic has a message.
TEST(RecordingContents, SayWhenTheFirstAndTheLastMessageCame) {
  WrittenRecording recording;
  recording.topics = {{"/none"}, {"/late"}, {"/early"}, {"/never"}};
  recording.messages = {{1, 5, cloudOf(1)}, {2, 3, cloudOf(1)}, {2, 9, cloudOf(1)}, {1, 7, cloudOf(1)}};
  for (const McapForm& form : {McapForm(), withoutIndex()}) {
    const std::string bytes = asMcap(recording, form);
    MemorySource source(testing::viewOf(bytes));
    const RecordingContents contents = readContents(source, builtInDecoders());
    EXPECT_EQ(contents.first.count(), 3);
    EXPECT_EQ(contents.last.count(), 9);
  }
}

TEST(RecordingContents, SayWhereARecordingIsCutOff) {
  BagForm form;
  form.isClosed = false;
  const std::string bytes = asBag(testing::bagSample(), form);
  MemorySource source(testing::viewOf(bytes));
  const RecordingContents contents = readContents(source, builtInDecoders());
  EXPECT_EQ(contents.kind, RecordingKind::bag);
  EXPECT_EQ(contents.messages, 7U);
  ASSERT_TRUE(contents.damage);
  EXPECT_EQ(contents.damage->byte, bytes.size());
  EXPECT_EQ(contents.damage->reason,
            "the recording is cut off: the bag was not closed, its index is missing");
}

}  // namespace
}  // namespace orvantis::toolkit
