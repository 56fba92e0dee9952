#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ByteText.h"
#include "ReadRecording.h"
#include "RecordingSamples.h"
#include "WrittenCloud.h"
#include "WrittenRecording.h"
#include "recording/BagReader.h"

namespace orvantis::toolkit {
namespace {

using testing::bytesOf;
using testing::readRecording;
using testing::withLength;
using Fields = std::vector<std::string>;

// Of the records of a bag without index: the number of clouds, and what is said.
std::string outcomeOf(const std::string& bytes) {
  const testing::ReadRecording result = readRecording(bytes);
  return std::to_string(result.clouds.size()) + " clouds; " + result.refusal + result.damage;
}

std::string op(std::uint8_t number) {
  return "op=" + bytesOf(number);
}
std::string header(std::uint64_t indexPos, std::uint32_t connections = 0, std::uint32_t chunks = 0,
                   const std::string& more = "a=b") {
  return "#ROSBAG V2.0\n" +
         testing::bagRecord({op(3), "index_pos=" + bytesOf(indexPos), "conn_count=" + bytesOf(connections),
                             "chunk_count=" + bytesOf(chunks), more},
                            "   ");
}
std::string connection(std::uint32_t id, const std::string& type = "sensor_msgs/PointCloud2") {
  return testing::bagRecord({op(7), "conn=" + bytesOf(id), "topic=/points"},
                            withLength("topic=/other") + withLength("type=" + type));
}
std::string message(std::uint32_t id) {
  return testing::bagRecord({op(2), "conn=" + bytesOf(id), "time=" + bytesOf(3U) + bytesOf(4U)},
                            testing::asRos1(testing::floatCloud({{1, 2, 3}}, 5)));
}
std::string chunkOf(const std::string& records) {
  return testing::bagRecord(
      {op(5), "compression=none", "size=" + bytesOf(static_cast<std::uint32_t>(records.size()))}, records);
}
std::string chunkInfo(std::uint32_t messages) {
  return testing::bagRecord({op(6), "ver=" + bytesOf(1U), "start_time=" + bytesOf(std::uint64_t{3}),
                             "end_time=" + bytesOf(std::uint64_t{3}), "count=" + bytesOf(1U)},
                            bytesOf(0U) + bytesOf(messages));
}

const std::string noIndex = "the recording is cut off: the bag was not closed, its index is missing";
const std::string nothing = "; no whole point cloud comes before";

std::string at(std::size_t byte) {
  return "byte " + std::to_string(byte) + ": ";
}

const std::string open = header(0);
const std::string chunk = chunkOf(connection(0) + message(0));

TEST(BagReader, TakesTopicAndTimeFromTheRecords) {
  const testing::ReadRecording result = readRecording(open + chunk);
  ASSERT_EQ(result.clouds.size(), 1U);
  EXPECT_EQ(result.clouds[0].topic, "/points");
  EXPECT_EQ(result.clouds[0].logged, 3'000'000'004);
  EXPECT_EQ(result.clouds[0].place, open.size() + chunk.size() - message(0).size());
}

TEST(BagReader, SaysWhereTheBagIsCutOff) {
  const std::string start = open + chunk;
  EXPECT_EQ(outcomeOf(start), "1 clouds; " + at(start.size()) + noIndex);
  EXPECT_EQ(outcomeOf(start + "abc"),
            "1 clouds; " + at(start.size()) + "the recording is cut off: a record needs 8 bytes and has 3");
  EXPECT_EQ(outcomeOf(start + chunk.substr(0, 30)), "1 clouds; " + at(start.size()) +
                                                        "the recording is cut off: a record needs " +
                                                        std::to_string(8 + 41) + " bytes and has 30");
  const std::string size = std::to_string(chunk.size());
  EXPECT_EQ(outcomeOf(start + chunk.substr(0, chunk.size() - 1)),
            "1 clouds; " + at(start.size()) + "the recording is cut off: a chunk needs " + size +
                " bytes and has " + std::to_string(chunk.size() - 1));
  const std::string index = testing::bagRecord({op(4)}, "entries");
  EXPECT_EQ(outcomeOf(start + index.substr(0, index.size() - 3)),
            "1 clouds; " + at(start.size()) + "the recording is cut off: an index of messages needs " +
                std::to_string(index.size()) + " bytes and has " + std::to_string(index.size() - 3));
  // Connections without the position of the index: it was being written.
  EXPECT_EQ(outcomeOf(start + connection(0)), "1 clouds; " + at(start.size()) + noIndex);
}

TEST(BagReader, ReadsAnIndexOnlyIfItIsSound) {
  const std::size_t begin = open.size() + chunk.size();
  const std::string start = header(begin, 1, 1) + chunk;
  EXPECT_EQ(outcomeOf(start + connection(0) + chunkInfo(1)), "1 clouds; ");
  EXPECT_EQ(
      outcomeOf(start + connection(0)),
      "1 clouds; " + at(begin + connection(0).size()) +
          "the recording is cut off: its index has 1 connection and 0 chunks, and its header counts 1 and 1");
  const std::string info = std::to_string(chunkInfo(1).size());
  EXPECT_EQ(outcomeOf(start + connection(0) + chunkInfo(1).substr(0, chunkInfo(1).size() - 1)),
            "1 clouds; " + at(begin + connection(0).size()) +
                "the recording is cut off: a record of the index needs " + info + " bytes and has " +
                std::to_string(chunkInfo(1).size() - 1));
  EXPECT_EQ(outcomeOf(start + connection(0) + chunkInfo(2)),
            "1 clouds; " + at(begin) + "the bag's index counts 2 messages in 1 chunk; the bag has 1 in 1");
  EXPECT_EQ(
      outcomeOf(start + connection(0) + testing::bagRecord({op(4)}, "")),
      "1 clouds; " + at(begin + connection(0).size()) + "the index has a record that does not belong there");
  EXPECT_EQ(outcomeOf(header(begin, 1, 2) + chunk + connection(0) + chunkInfo(1) + chunkInfo(0)),
            "1 clouds; " + at(begin) + "the bag's index counts 1 message in 2 chunks; the bag has 1 in 1");
  EXPECT_EQ(outcomeOf(header(begin + 1, 1, 1) + chunk + connection(0) + chunkInfo(1)),
            "1 clouds; " + at(begin) + "the recording is cut off: its index should begin at byte " +
                std::to_string(begin + 1));
  const std::string empty = header(header(0).size());
  EXPECT_EQ(outcomeOf(empty).substr(0, 56), "0 clouds; byte 0: the recording holds no point clouds (s");
}

TEST(BagReader, SaysWhatIsWrongWithARecord) {
  const std::size_t begin = open.size();
  EXPECT_EQ(
      outcomeOf(open + testing::bagRecord({op(9)}, "")),
      "0 clouds; " + at(begin) + "a record stands between the chunks that does not belong there" + nothing);
  EXPECT_EQ(
      outcomeOf(open + testing::bagRecord({"op=toolong"}, "")),
      "0 clouds; " + at(begin) + "the header of a record has 7 bytes for op and needs 1 byte" + nothing);
  EXPECT_EQ(
      outcomeOf(open + testing::bagRecord({"conn=1"}, "")),
      "0 clouds; " + at(begin) + "the header of a record has no value for op and needs 1 byte" + nothing);
  EXPECT_EQ(outcomeOf(open + testing::bagRecord({op(5), "nameless"}, "")),
            "0 clouds; " + at(begin) + "the header of a record has a field without a name" + nothing);
  EXPECT_EQ(outcomeOf(open + withLength("\x09\x01\x01\x01op=") + withLength("")),
            "0 clouds; " + at(begin) +
                "the header of a record is too short: at its byte 4 it needs 16843017 bytes and has 3" +
                nothing);
  const std::string claim = testing::bagRecord({op(5), "compression=none", "size=" + bytesOf(9U)}, "short");
  EXPECT_EQ(outcomeOf(open + claim),
            "0 clouds; " + at(begin) + "a chunk without compression has 5 bytes and claims 9" + nothing);
  EXPECT_EQ(outcomeOf(open + testing::bagRecord({op(5), "compression=zip", "size=" + bytesOf(9U)}, "short")),
            "0 clouds; " + at(begin) + "a chunk is compressed with \"zip\"; lz4, zstd and bz2 can be read" +
                nothing);
}

TEST(BagReader, SaysWhatIsWrongWithinAChunk) {
  const std::size_t begin = open.size() + 49;
  const std::size_t second = begin + connection(0).size();
  const auto outcome = [](const std::string& records) { return outcomeOf(open + chunkOf(records)); };
  EXPECT_EQ(
      outcome(message(4)),
      "0 clouds; " + at(begin) + "a message is of connection 4, which is not declared before it" + nothing);
  EXPECT_EQ(outcome(connection(0) + connection(0, "other")),
            "0 clouds; " + at(second) + "connection 0 is declared twice, differently" + nothing);
  EXPECT_EQ(outcome(connection(0) + chunkInfo(1)),
            "0 clouds; " + at(second) + "a chunk has a record that does not belong there" + nothing);
  EXPECT_EQ(outcome(connection(0) + message(0).substr(0, 100)),
            "0 clouds; " + at(second) +
                "a chunk is damaged: its last record is longer than what is left of it" + nothing);
  EXPECT_EQ(outcome(testing::bagRecord({op(7), "conn=" + bytesOf(3U), "topic=/a"}, "")),
            "0 clouds; " + at(begin) + "connection 3 has no type" + nothing);
  EXPECT_EQ(outcome(testing::bagRecord({op(7), "conn=" + bytesOf(3U)}, withLength("type=a"))),
            "0 clouds; " + at(begin) + "connection 3 has no topic" + nothing);
}

TEST(BagReader, RefusesABagWithoutItsHeader) {
  EXPECT_EQ(outcomeOf("#ROSBAG V2.0\n"), "0 clouds; byte 13: the header of the bag is missing");
  EXPECT_EQ(outcomeOf("#ROSBAG V2.0\n" + chunk), "0 clouds; byte 13: the header of the bag is missing");
  EXPECT_EQ(outcomeOf(open.substr(0, open.size() - 1)),
            "0 clouds; byte 13: the recording is cut off: the header of the bag needs " +
                std::to_string(open.size() - 13) + " bytes and has " + std::to_string(open.size() - 14));
  EXPECT_EQ(outcomeOf(header(0, 0, 0, "encryptor=rosbag/AesCbcEncryptor")),
            "0 clouds; byte 13: the bag is encrypted by rosbag/AesCbcEncryptor");
  EXPECT_EQ(outcomeOf(header(0, 0, 0, "encryptor=") + chunk).substr(0, 8), "1 clouds");
}

TEST(BagReader, HoldsNoMoreConnectionsThanARecordingNeeds) {
  std::string records;
  for (std::uint32_t i = 0; i <= 100'000; ++i) {
    records += connection(i);
  }
  const std::string outcome = outcomeOf(open + chunkOf(records));
  EXPECT_TRUE(outcome.ends_with(": the bag has more than 100000 connections" + nothing)) << outcome;
  records.resize(records.size() - connection(0).size());
  EXPECT_TRUE(outcomeOf(open + chunkOf(records + message(0))).starts_with("1 clouds; "));
}

TEST(BagReader, BelievesNoLength) {
  const std::string start = open + chunk;
  for (const char* length : {"\xFF\xFF\xFF\xFF", "\xF0\xFF\xFF\xFF", "\xFF\xFF\xFF\x7F"}) {
    EXPECT_TRUE(
        outcomeOf(start + length + std::string(50, 'x')).starts_with("1 clouds; " + at(start.size())));
    const std::string head = withLength(withLength(op(5)) + withLength("size=" + bytesOf(0xFFFFFFFFU)) +
                                        withLength("compression=lz4"));
    EXPECT_TRUE(
        outcomeOf(start + head + length + std::string(50, 'x')).starts_with("1 clouds; " + at(start.size())));
  }
}

}  // namespace
}  // namespace orvantis::toolkit
