#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string_view>

#include <filter/monitor/Stamp.h>

#include "recording/TopicTable.h"

namespace orvantis::toolkit {

/// The first bytes of a ROS bag.
inline constexpr std::string_view bagMagic = "#ROSBAG V2.0\n";

/// The kinds of records of a bag.
enum class BagOp : std::uint8_t {
  message = 0x02,
  bagHeader = 0x03,
  messageIndex = 0x04,
  chunk = 0x05,
  chunkInfo = 0x06,
  connection = 0x07,
};

/// The named values at the begin of every record, as a view.
class BagFields {
 public:
  /// @throws ReadError at `place` when a field is longer than the rest of the bytes, or has no name
  BagFields(std::span<const std::byte> bytes, std::uint64_t place);

  /// The value of the field; nothing when it is missing.
  std::optional<std::string_view> text(std::string_view name) const;

  /// A number of exactly that size.
  /// @throws ReadError when it is missing or has another size
  template <typename Number>
  Number number(std::string_view name) const;

  /// A time in seconds and nanoseconds. @throws ReadError as above
  filter::monitor::Stamp time(std::string_view name) const;

  BagOp op() const { return static_cast<BagOp>(number<std::uint8_t>("op")); }

 private:
  std::span<const std::byte> bytes_;
  std::uint64_t place_;
};

/// One record of a bag as a view: a header of named values, and data, each after its length in 4 bytes.
struct BagRecord {
  BagFields fields;
  std::span<const std::byte> data;  ///< of a record that is cut off, the bytes that are there
  std::uint64_t dataSize = 0;       ///< as the record claims
  std::uint64_t size = 0;           ///< of the whole record, as it claims

  bool isWhole() const { return data.size() == dataSize; }
  std::uint64_t availableSize() const { return size - dataSize + data.size(); }

  /// The record at the begin of `bytes`; nothing when its header is not complete.
  /// @throws ReadError when the header is damaged
  static std::optional<BagRecord> at(std::span<const std::byte> bytes, std::uint64_t place);
};

/// The connections of a bag. A connection may be declared again with the same content only.
class BagConnections {
 public:
  /// @throws ReadError when the record is damaged
  void add(const BagRecord& record, std::uint64_t place, TopicTable& topics);

  /// The number of the topic of a connection.
  /// @throws ReadError for a connection that was not declared
  std::size_t topicOf(std::uint32_t connection, std::uint64_t place) const;

 private:
  std::map<std::uint32_t, std::size_t> topics_;
};

}  // namespace orvantis::toolkit
