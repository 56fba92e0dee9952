#include "recording/BagRecords.h"

#include <algorithm>
#include <string>

#include "recording/Cursor.h"
#include "recording/ReadError.h"
#include "text/Text.h"

namespace orvantis::toolkit {
namespace {

constexpr const char* headerName = "the header of a record";

// Limits memory, because a compressed chunk of a few kilobytes may unfold to a million connections.
constexpr std::size_t mostConnections = 100'000;

}  // namespace

BagFields::BagFields(std::span<const std::byte> bytes, std::uint64_t place) : bytes_(bytes), place_(place) {
  Cursor cursor(bytes, place, headerName);
  while (cursor.remaining() != 0) {
    if (cursor.takeText().find('=') == std::string_view::npos) {
      throw ReadError(atByte(place), "the header of a record has a field without a name");
    }
  }
}

std::optional<std::string_view> BagFields::text(std::string_view name) const {
  Cursor cursor(bytes_, place_, headerName);
  while (cursor.remaining() != 0) {
    const std::string_view field = cursor.takeText();
    const std::size_t end = field.find('=');
    if (field.substr(0, end) == name) {
      return field.substr(end + 1);
    }
  }
  return std::nullopt;
}

template <typename Number>
Number BagFields::number(std::string_view name) const {
  const std::optional<std::string_view> value = text(name);
  if (!value || value->size() != sizeof(Number)) {
    throw ReadError(atByte(place_), "the header of a record has " +
                                        (value ? counted(value->size(), "byte") : "no value") + " for " +
                                        std::string(name) + " and needs " + counted(sizeof(Number), "byte"));
  }
  return loadLittleEndian<Number>(reinterpret_cast<const std::byte*>(value->data()));
}

template std::uint8_t BagFields::number(std::string_view name) const;
template std::uint32_t BagFields::number(std::string_view name) const;
template std::uint64_t BagFields::number(std::string_view name) const;

filter::monitor::Stamp BagFields::time(std::string_view name) const {
  const auto value = number<std::uint64_t>(name);  // seconds in the first four bytes
  return std::chrono::seconds(value & 0xFFFFFFFFU) + std::chrono::nanoseconds(value >> 32U);
}

std::optional<BagRecord> BagRecord::at(std::span<const std::byte> bytes, std::uint64_t place) {
  constexpr std::size_t lengthSize = sizeof(std::uint32_t);
  if (bytes.size() < lengthSize) {
    return std::nullopt;
  }
  const auto headerSize = loadLittleEndian<std::uint32_t>(bytes.data());
  bytes = bytes.subspan(lengthSize);
  if (bytes.size() < lengthSize || bytes.size() - lengthSize < headerSize) {
    return std::nullopt;
  }
  const BagFields fields(bytes.first(headerSize), place);
  const auto dataSize = loadLittleEndian<std::uint32_t>(&bytes[headerSize]);
  bytes = bytes.subspan(headerSize + lengthSize);
  return BagRecord{fields, bytes.first(std::min<std::size_t>(dataSize, bytes.size())), dataSize,
                   2 * lengthSize + std::uint64_t{headerSize} + dataSize};
}

void BagConnections::add(const BagRecord& record, std::uint64_t place, TopicTable& topics) {
  const auto connection = record.fields.number<std::uint32_t>("conn");
  const std::optional<std::string_view> name = record.fields.text("topic");
  const std::optional<std::string_view> type = BagFields(record.data, place).text("type");
  if (!name || !type) {
    throw ReadError(atByte(place),
                    "connection " + std::to_string(connection) + " has no " + (name ? "type" : "topic"));
  }
  const std::size_t topic = topics.add(*name, *type, "ros1", place);
  const auto [at, isNew] = topics_.try_emplace(connection, topic);
  if (topics_.size() > mostConnections) {
    throw ReadError(atByte(place),
                    "the bag has more than " + std::to_string(mostConnections) + " connections");
  }
  if (!isNew && at->second != topic) {
    throw ReadError(atByte(place),
                    "connection " + std::to_string(connection) + " is declared twice, differently");
  }
}

std::size_t BagConnections::topicOf(std::uint32_t connection, std::uint64_t place) const {
  const auto at = topics_.find(connection);
  if (at == topics_.end()) {
    throw ReadError(atByte(place), "a message is of connection " + std::to_string(connection) +
                                       ", which is not declared before it");
  }
  return at->second;
}

}  // namespace orvantis::toolkit
