#include "recording/McapRecords.h"

#include <limits>

#include "recording/Cursor.h"
#include "recording/ReadError.h"

namespace orvantis::toolkit {

McapRecordHeader::McapRecordHeader(std::span<const std::byte> bytes)
    : opcode(static_cast<McapOpcode>(bytes[0])), length(loadLittleEndian<std::uint64_t>(&bytes[1])) {}

filter::monitor::Stamp mcapTime(std::uint64_t nanoseconds, std::uint64_t place) {
  constexpr std::uint64_t most = std::numeric_limits<std::int64_t>::max();
  if (nanoseconds > most) {
    throw ReadError(atByte(place), "a time is " + std::to_string(nanoseconds) + " ns; at most " +
                                       std::to_string(most) + " are allowed");
  }
  return filter::monitor::Stamp(static_cast<std::int64_t>(nanoseconds));
}

McapMessageHeader::McapMessageHeader(std::span<const std::byte> content, std::uint64_t place) {
  Cursor cursor(content, place, "a message");
  channel = cursor.take<std::uint16_t>();
  cursor.take<std::uint32_t>();  // a running number
  logged = mcapTime(cursor.take<std::uint64_t>(), place);
  cursor.take<std::uint64_t>();  // when it was published
}

McapChunkHeader::McapChunkHeader(std::span<const std::byte> content, std::uint64_t place) {
  Cursor cursor(content, place, "a chunk");
  cursor.take(2 * sizeof(std::uint64_t));  // the times of its first and last message
  unfoldedSize = cursor.take<std::uint64_t>();
  crc = cursor.take<std::uint32_t>();
  compression = cursor.takeText();
  recordsSize = cursor.take<std::uint64_t>();
  size = cursor.position();
}

void McapVocabulary::addSchema(std::span<const std::byte> content, std::uint64_t place) {
  Cursor cursor(content, place, "a schema");
  const auto id = cursor.take<std::uint16_t>();
  const std::string_view name = cursor.takeText();
  const auto [at, isNew] = types_.try_emplace(id, name);
  bytes_ += isNew ? name.size() : 0;
  if (bytes_ > mostBytesOfNames) {
    throw ReadError(atByte(place), "the names of the recording's schemas take more than " +
                                       std::to_string(mostBytesOfNames) + " bytes");
  }
  if (!isNew && at->second != name) {
    throw ReadError(atByte(place),
                    "schema " + std::to_string(id) + " is declared twice with different names");
  }
}

void McapVocabulary::addChannel(std::span<const std::byte> content, std::uint64_t place, TopicTable& topics) {
  Cursor cursor(content, place, "a channel");
  const auto id = cursor.take<std::uint16_t>();
  const auto schema = cursor.take<std::uint16_t>();
  const std::string_view name = cursor.takeText();
  const std::string_view encoding = cursor.takeText();
  const auto type = types_.find(schema);
  if (type == types_.end() && schema != 0) {
    throw ReadError(atByte(place), "channel " + std::to_string(id) + " refers to schema " +
                                       std::to_string(schema) + ", which is not declared before it");
  }
  const std::size_t topic =
      topics.add(name, schema == 0 ? std::string_view() : std::string_view(type->second), encoding, place);
  const auto [at, isNew] = topics_.try_emplace(id, topic);
  if (!isNew && at->second != topic) {
    throw ReadError(atByte(place), "channel " + std::to_string(id) + " is declared twice, differently");
  }
}

std::optional<std::size_t> McapVocabulary::find(std::uint16_t channel) const {
  const auto at = topics_.find(channel);
  return at == topics_.end() ? std::nullopt : std::optional(at->second);
}

std::size_t McapVocabulary::topicOf(std::uint16_t channel, std::uint64_t place) const {
  const std::optional<std::size_t> topic = find(channel);
  if (!topic) {
    throw ReadError(atByte(place), "a message is of channel " + std::to_string(channel) +
                                       ", which is not declared before it");
  }
  return *topic;
}

}  // namespace orvantis::toolkit
