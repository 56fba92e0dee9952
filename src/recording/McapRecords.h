#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include <filter/monitor/Stamp.h>

#include "recording/TopicTable.h"

namespace orvantis::toolkit {

/// The first and the last bytes of an MCAP file.
inline constexpr std::array<std::uint8_t, 8> mcapMagic = {0x89, 'M', 'C', 'A', 'P', '0', '\r', '\n'};

/// The kinds of records that are read. All others are skipped, as the format demands.
enum class McapOpcode : std::uint8_t {
  footer = 0x02,
  schema = 0x03,
  channel = 0x04,
  message = 0x05,
  chunk = 0x06,
  statistics = 0x0B,
  dataEnd = 0x0F,
};

/// The bytes before the content of every record.
struct McapRecordHeader {
  static constexpr std::size_t size = 9;

  McapOpcode opcode{};
  std::uint64_t length = 0;

  explicit McapRecordHeader(std::span<const std::byte> bytes);
};

/// A time of the file as a stamp.
/// @throws ReadError at `place` when the time does not fit into a stamp
filter::monitor::Stamp mcapTime(std::uint64_t nanoseconds, std::uint64_t place);

/// The bytes before the data of every message.
struct McapMessageHeader {
  static constexpr std::size_t size = 22;

  std::uint16_t channel = 0;
  filter::monitor::Stamp logged{};

  /// @throws ReadError when the content is too short, or for a time that a stamp cannot hold
  McapMessageHeader(std::span<const std::byte> content, std::uint64_t place);
};

/// The bytes before the records of every chunk.
struct McapChunkHeader {
  static constexpr std::size_t leastSize = 44;  ///< with the name of a compression

  std::uint64_t unfoldedSize = 0;
  std::uint32_t crc = 0;         ///< of the unfolded records; 0: there is no CRC
  std::string_view compression;  ///< empty for none
  std::uint64_t recordsSize = 0;
  std::size_t size = 0;  ///< of this header

  /// @throws ReadError when the content is too short
  McapChunkHeader(std::span<const std::byte> content, std::uint64_t place);
};

/// The schemas and channels of an MCAP file. They may be declared again with the same content only.
class McapVocabulary {
 public:
  /// @throws ReadError when the record is damaged
  void addSchema(std::span<const std::byte> content, std::uint64_t place);
  void addChannel(std::span<const std::byte> content, std::uint64_t place, TopicTable& topics);

  /// The number of the topic of a channel; nothing for one that was not declared.
  std::optional<std::size_t> find(std::uint16_t channel) const;

  /// The same.
  /// @throws ReadError for a channel that was not declared
  std::size_t topicOf(std::uint16_t channel, std::uint64_t place) const;

 private:
  std::map<std::uint16_t, std::string> types_;
  std::size_t bytes_ = 0;  ///< of these names
  std::map<std::uint16_t, std::size_t> topics_;
};

}  // namespace orvantis::toolkit
