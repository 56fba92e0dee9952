#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ByteText.h"
#include "Compressors.h"
#include "ReadRecording.h"
#include "RecordingSamples.h"
#include "WrittenCloud.h"
#include "WrittenRecording.h"
#include "recording/McapReader.h"

namespace orvantis::toolkit {
namespace {

using testing::asMcap;
using testing::bytesOf;
using testing::McapForm;
using testing::mcapRecord;
using testing::readRecording;
using testing::slowCrc;
using testing::withLength;

const std::string magic = "\x89MCAP0\r\n";

std::string schema(std::uint16_t id, const std::string& name) {
  return mcapRecord(0x03, bytesOf(id) + withLength(name) + withLength("ros2msg") + withLength("text"));
}
std::string channel(std::uint16_t id, std::uint16_t schemaId, const std::string& topic) {
  return mcapRecord(0x04,
                    bytesOf(id) + bytesOf(schemaId) + withLength(topic) + withLength("cdr") + withLength(""));
}
std::string message(std::uint16_t channelId, std::uint64_t logTime = 7) {
  return mcapRecord(0x05, bytesOf(channelId) + bytesOf(1U) + bytesOf(logTime) + bytesOf(logTime) +
                              testing::asCdr(testing::floatCloud({{1, 2, 3}}, 5)));
}
std::string chunkOf(const std::string& records, const std::string& compression, const std::string& folded,
                    std::uint32_t crc = 0) {
  return mcapRecord(0x06, bytesOf(std::uint64_t{0}) + bytesOf(std::uint64_t{0}) +
                              bytesOf(std::uint64_t{records.size()}) + bytesOf(crc) +
                              withLength(compression) + bytesOf(std::uint64_t{folded.size()}) + folded);
}
std::string footer(std::uint64_t summary = 0) {
  return mcapRecord(0x02, bytesOf(summary) + bytesOf(std::uint64_t{0}) + bytesOf(0U)) + magic;
}

const std::string cloudTopic = schema(1, "sensor_msgs/msg/PointCloud2") + channel(2, 1, "/points");
const std::string dataEnd = mcapRecord(0x0F, bytesOf(0U));

// Of a file with these records: the number of clouds, and what is said.
std::string outcome(const std::string& records) {
  const testing::ReadRecording result =
      readRecording(magic + mcapRecord(0x01, withLength("") + withLength("")) + records);
  return std::to_string(result.clouds.size()) + " clouds; " + result.refusal + result.damage;
}
// The byte of a record, as `outcome` counts: behind the magic bytes and the header.
std::string at(std::size_t byte) {
  return "byte " + std::to_string(8 + 17 + byte) + ": ";
}

TEST(McapReader, PassesOverRecordsThatItDoesNotKnow) {
  const std::string others = mcapRecord(0x09, std::string(300, 'a')) + mcapRecord(0x0C, "metadata") +
                             mcapRecord(0x7F, "of a later time") + mcapRecord(0x80, "") +
                             mcapRecord(0xFF, "private");
  EXPECT_EQ(outcome(others + cloudTopic + others + message(2) + others + dataEnd + others + footer()),
            "1 clouds; ");
  const std::string records = others + cloudTopic + others + message(2) + others;
  EXPECT_EQ(outcome(chunkOf(records, "", records) + dataEnd + footer()), "1 clouds; ");
  // With a CRC of all data, what is passed over is read.
  const std::string data = magic + mcapRecord(0x01, "") + others + cloudTopic + message(2) +
                           mcapRecord(0x09, std::string(600'000, 'b'));
  const std::string bytes = data + mcapRecord(0x0F, bytesOf(slowCrc(data))) + footer();
  EXPECT_EQ(readRecording(bytes).clouds.size(), 1U);
  EXPECT_EQ(readRecording(bytes).damage, "");
}

TEST(McapReader, ReadsRecordsThatAreLongerThanItKnows) {
  const std::string records = cloudTopic + message(2);
  const std::string chunk = chunkOf(records, "", records, slowCrc(records)).substr(9) + "new";
  const std::string end = mcapRecord(0x0F, bytesOf(0U) + "new");
  EXPECT_EQ(outcome(mcapRecord(0x06, chunk) + end + footer()), "1 clouds; ");
}

TEST(McapReader, SaysWhereTheFileIsCutOff) {
  const std::string start = cloudTopic + message(2);
  EXPECT_EQ(outcome(start), "1 clouds; " + at(start.size()) +
                                "the recording is cut off: the record that ends its data is missing");
  EXPECT_EQ(outcome(start + "\x05..."),
            "1 clouds; " + at(start.size()) + "the recording is cut off: a record needs 9 bytes and has 4");
  const std::string whole = message(2);
  EXPECT_EQ(outcome(start + whole.substr(0, whole.size() - 1)),
            "1 clouds; " + at(start.size()) + "the recording is cut off: a message needs " +
                std::to_string(whole.size() - 9) + " bytes and has " + std::to_string(whole.size() - 10));
  EXPECT_EQ(outcome(start + whole.substr(0, 20)), "1 clouds; " + at(start.size()) +
                                                      "the recording is cut off: a message needs " +
                                                      std::to_string(whole.size() - 9) + " bytes and has 11");
  EXPECT_EQ(
      outcome(start + schema(3, "T").substr(0, 12)),
      "1 clouds; " + at(start.size()) + "the recording is cut off: a declaration needs 26 bytes and has 3");
  EXPECT_EQ(outcome(start + mcapRecord(0x09, "an attachment").substr(0, 12)),
            "1 clouds; " + at(start.size()) + "the recording is cut off: a record needs 13 bytes and has 3");
  EXPECT_EQ(outcome(start + dataEnd.substr(0, 11)),
            "1 clouds; " + at(start.size()) +
                "the recording is cut off: the record that ends the data needs 4 bytes and has 2");
  EXPECT_EQ(outcome(start + dataEnd),
            "1 clouds; " + at(start.size() + 13) +
                "the recording is cut off: a record after the data needs 9 bytes and has 0");
  EXPECT_EQ(outcome(start + dataEnd + footer().substr(0, 36)),
            "1 clouds; " + at(start.size() + 13 + 29) +
                "the recording is cut off: the bytes that end an MCAP file are missing");
}

TEST(McapReader, GivesTheWholeMessagesOfAChunkThatIsCutOff) {
  const std::string records = cloudTopic + message(2) + message(2);
  const std::string chunk = chunkOf(records, "", records, 12345);
  for (const std::size_t missing : {1U, 40U}) {
    EXPECT_EQ(outcome(chunk.substr(0, chunk.size() - missing)),
              "1 clouds; " + at(0) + "the recording is cut off: a chunk needs " +
                  std::to_string(chunk.size() - 9) + " bytes and has " +
                  std::to_string(chunk.size() - 9 - missing));
  }
  const std::string padded = records + mcapRecord(0x99, std::string(300'000, 'x'));
  const std::string folded = chunkOf(padded, "zstd", testing::zstdOf(padded));
  EXPECT_EQ(outcome(folded.substr(0, folded.size() - 4)).substr(0, 35),
            "2 clouds; " + at(0) + "the recording is");
  EXPECT_EQ(outcome(chunk.substr(0, 9 + 43)),
            "0 clouds; " + at(0) + "the recording is cut off: a chunk needs " +
                std::to_string(chunk.size() - 9) + " bytes and has 43; no whole point cloud comes before");
}

TEST(McapReader, ChecksTheCrcOfEveryChunkBeforeItsMessagesAreGiven) {
  const std::string records = cloudTopic + message(2);
  const std::string crc = std::to_string(slowCrc(records));
  const std::string good = chunkOf(records, "", records, slowCrc(records));
  for (const std::string& chunk :
       {chunkOf(records, "", records, 77), chunkOf(records, "lz4", testing::lz4Of(records), 77)}) {
    EXPECT_EQ(outcome(good + chunk + dataEnd + footer()),
              "1 clouds; " + at(good.size()) + "a chunk is damaged: its CRC is " + crc + " and should be 77");
  }
}

TEST(McapReader, ChecksTheCrcOfAllDataAtTheirEnd) {
  McapForm form;
  for (const std::size_t chunk : {0U, 2U}) {
    for (const char* compression : {"", "zstd"}) {
      form.messagesInChunk = chunk;
      form.compression = compression;
      form.hasChunkCrcs = false;
      std::string bytes = asMcap(testing::mcapSample(), form);
      const std::size_t end = bytes.rfind(std::string("\x0F\x04\0\0\0\0\0\0\0", 9));
      bytes[end + 9] = static_cast<char>(bytes[end + 9] ^ 1);
      const testing::ReadRecording result = readRecording(bytes);
      EXPECT_EQ(result.clouds.size(), 4U);
      EXPECT_EQ(result.damage.substr(0, result.damage.find(" is ")),
                "byte " + std::to_string(end) + ": the data before are damaged somewhere: their CRC");
    }
  }
}

TEST(McapReader, SaysWhatIsWrongWithTheSummary) {
  const std::string start = cloudTopic + message(2) + dataEnd;
  const std::string where = "1 clouds; " + at(start.size());
  EXPECT_EQ(outcome(start + mcapRecord(0x02, std::string(16, '\0') + bytesOf(5U)) + magic),
            where + "the summary is damaged: its CRC is 1875167664 and should be 5");
  EXPECT_EQ(outcome(start + footer(77)),
            where + "the footer says that the summary begins at byte 77; it begins at byte " +
                std::to_string(25 + start.size()));
  EXPECT_EQ(outcome(start + mcapRecord(0x02, "short") + magic),
            where + "the footer is too short: at its byte 0 it needs 8 bytes and has 5");
  const auto statistics = [](std::uint64_t messages) {
    return mcapRecord(0x0B,
                      bytesOf(messages) + std::string(18, '\0') + std::string(16, '\0') + withLength(""));
  };
  EXPECT_EQ(outcome(start + statistics(1) + footer(25 + start.size())), "1 clouds; ");
  EXPECT_EQ(
      outcome(start + statistics(2) + footer(25 + start.size())),
      "1 clouds; " + at(start.size() - 13) + "the recording's index counts 2 messages; the recording has 1");
  EXPECT_EQ(outcome(start + mcapRecord(0x0B, "") + footer(25 + start.size())),
            where + "the record of statistics is too short: at its byte 0 it needs 8 bytes and has 0");
}

// A summary that begins too late is sound as far as it goes, and is not the file's.
TEST(McapReader, FindsASummaryThatBeginsTooLate) {
  const std::string start = cloudTopic + message(2) + dataEnd;
  const std::string part = schema(1, "sensor_msgs/msg/PointCloud2");
  const std::string late = std::to_string(25 + start.size() + part.size());
  EXPECT_EQ(outcome(start + part + cloudTopic + footer(25 + start.size() + part.size())),
            "1 clouds; " + at(start.size() + part.size() + cloudTopic.size()) +
                "the footer says that the summary begins at byte " + late + "; it begins at byte " +
                std::to_string(25 + start.size()));
}

// Nothing has to be read of a record that is passed over, for there is no CRC of it.
TEST(McapReader, PassesOverNoMoreThanThereIs) {
  const std::string start = cloudTopic + message(2);
  const std::string rest = "an attachment" + dataEnd + footer();
  for (const std::uint64_t length : {std::uint64_t{1000}, ~std::uint64_t{0}}) {
    EXPECT_EQ(outcome(start + bytesOf('\x09') + bytesOf(length) + rest),
              "1 clouds; " + at(start.size()) + "the recording is cut off: a record needs " +
                  std::to_string(length) + " bytes and has " + std::to_string(rest.size()));
  }
}

TEST(McapReader, NeedsEveryChannelAndSchemaBeforeItIsUsed) {
  const std::string end = "; no whole point cloud comes before";
  EXPECT_EQ(outcome(message(2)),
            "0 clouds; " + at(0) + "a message is of channel 2, which is not declared before it" + end);
  EXPECT_EQ(outcome(channel(3, 9, "/x")),
            "0 clouds; " + at(0) + "channel 3 refers to schema 9, which is not declared before it" + end);
  const std::string start = cloudTopic + message(2);
  EXPECT_EQ(outcome(start + cloudTopic + message(2) + dataEnd + footer()), "2 clouds; ");
  EXPECT_EQ(outcome(start + schema(1, "other")),
            "1 clouds; " + at(start.size()) + "schema 1 is declared twice with different names");
  EXPECT_EQ(outcome(start + channel(2, 1, "/other")),
            "1 clouds; " + at(start.size()) + "channel 2 is declared twice, differently");
}

TEST(McapReader, SaysWhatIsWrongWithAChunk) {
  const std::string records = cloudTopic + message(2);
  const std::string end = "; no whole point cloud comes before";
  const std::string long1 = records.substr(0, records.size() - 1);
  EXPECT_EQ(outcome(chunkOf(long1, "", long1) + dataEnd + footer()),
            "0 clouds; " + at(49 + cloudTopic.size()) +
                "a chunk is damaged: its last record is longer than what is left of it" + end);
  const std::string more = records + "#";
  EXPECT_EQ(outcome(chunkOf(more, "lz4", testing::lz4Of(more)) + dataEnd + footer()),
            "1 clouds; " + at(0) + "a chunk is damaged: its last record is longer than what is left of it");
  EXPECT_EQ(outcome(chunkOf(records + "#", "", records)),
            "0 clouds; " + at(0) + "a chunk without compression claims " + std::to_string(records.size()) +
                " bytes, and " + std::to_string(records.size() + 1) + " unfolded" + end);
  std::string chunk = chunkOf(records, "", records);
  chunk[9 + 32] = static_cast<char>(chunk[9 + 32] + 1);
  EXPECT_EQ(outcome(chunk + dataEnd + footer()),
            "0 clouds; " + at(0) + "a chunk claims " + std::to_string(records.size() + 1) +
                " bytes of records and has " + std::to_string(records.size()) + end);
  EXPECT_EQ(outcome(mcapRecord(0x06, "short") + dataEnd + footer()),
            "0 clouds; " + at(0) + "a chunk is too short: at its byte 0 it needs 16 bytes and has 5" + end);
}

TEST(McapReader, SaysWhatElseIsWrong) {
  const std::string start = cloudTopic + message(2);
  EXPECT_EQ(outcome(start + footer()),
            "1 clouds; " + at(start.size()) + "the footer comes before the record that ends the data");
  EXPECT_EQ(
      outcome(start + mcapRecord(0x05, "short")),
      "1 clouds; " + at(start.size()) + "a message is too short: at its byte 2 it needs 4 bytes and has 3");
  EXPECT_EQ(outcome(start + message(2, 9'223'372'036'854'775'807U) + dataEnd + footer()), "2 clouds; ");
  EXPECT_EQ(outcome(start + message(2, 9'223'372'036'854'775'808U)),
            "1 clouds; " + at(start.size()) +
                "a time is 9223372036854775808 ns; at most 9223372036854775807 are allowed");
}

TEST(McapReader, BelievesNoLength) {
  const std::string start = cloudTopic + message(2);
  for (const char opcode : {'\x03', '\x05', '\x06', '\x07', '\x0F', '\x55'}) {
    for (const std::uint64_t length : {std::uint64_t{1} << 40U, ~std::uint64_t{0}, ~std::uint64_t{0} - 8}) {
      const std::string result = outcome(start + bytesOf(opcode) + bytesOf(length) + std::string(200, '\0'));
      EXPECT_TRUE(result.starts_with("1 clouds; " + at(start.size()))) << result;
    }
  }
  const std::string hostile = withLength("").replace(0, 4, "\xFF\xFF\xFF\xFF");
  EXPECT_TRUE(outcome(start + mcapRecord(0x03, bytesOf(std::uint16_t{7}) + hostile))
                  .ends_with("a schema is too short: at its byte 6 it needs 4294967295 bytes and has 0"));
}

TEST(McapReader, HoldsNoMoreNamesThanARecordingNeeds) {
  std::string records;
  for (std::uint16_t i = 0; i < 10'000; ++i) {
    records += channel(i, 0, std::string(1000, 'n') + std::to_string(i));
  }
  const std::string result = outcome(chunkOf(records, "zstd", testing::zstdOf(records)) + dataEnd + footer());
  EXPECT_EQ(result,
            "0 clouds; " + at(0) +
                "the names of the recording's topics take more than 16777216 bytes; no whole point cloud "
                "comes before");
  records.clear();
  for (std::uint16_t i = 1; i <= 20; ++i) {
    records += schema(i, std::string(1'000'000, 'n'));
  }
  EXPECT_EQ(outcome(records),
            "0 clouds; " + at(16 * schema(1, std::string(1'000'000, 'n')).size()) +
                "the names of the recording's schemas take more than 16777216 bytes; no whole "
                "point cloud comes before");
}

}  // namespace
}  // namespace orvantis::toolkit
