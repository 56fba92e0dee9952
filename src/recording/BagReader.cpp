#include "recording/BagReader.h"

#include <string>
#include <utility>

#include "recording/ReadError.h"
#include "text/Text.h"

namespace orvantis::toolkit {

BagReader::BagReader(ByteSource& source, Decoders decoders)
    : source_(source), header_(readBagHeader(source)), position_(header_.end), chunks_(std::move(decoders)) {
  if (!source.size() || header_.indexPos == 0) {
    return;
  }
  try {
    BagIndex index = readBagIndex(source, header_);
    topics_ = std::move(index.topics);
    connections_ = std::move(index.connections);
    index_ = index.sums;
  } catch (const ReadError&) {
    return;  // the chunks are read without the index, which is read again after them
  }
}

std::optional<RecordedMessage> BagReader::next() {
  while (!isAtEnd_) {
    if (std::optional<RecordedMessage> message = nextInChunk()) {
      return message;
    }
    if (std::optional<RecordedMessage> message = readRecord()) {
      return message;
    }
  }
  return std::nullopt;
}

std::optional<RecordedMessage> BagReader::nextInChunk() {
  while (!chunk_.rest.empty()) {
    const std::uint64_t place = chunk_.place;
    const std::optional<BagRecord> record = BagRecord::at(chunk_.rest, place);
    if (!record || !record->isWhole()) {
      if (!chunk_.cut) {
        throw ReadError(atByte(place),
                        "a chunk is damaged: its last record is longer than what is left of it");
      }
      break;
    }
    chunk_.drop(static_cast<std::size_t>(record->size));
    const BagOp op = record->fields.op();
    if (op == BagOp::message) {
      return message(*record, place);
    }
    if (op != BagOp::connection) {
      throw ReadError(atByte(place), "a chunk has a record that does not belong there");
    }
    connections_.add(*record, place, topics_);
  }
  chunk_.rest = {};
  if (chunk_.cut) {
    throw ReadError(*chunk_.cut);
  }
  return std::nullopt;
}

std::optional<RecordedMessage> BagReader::readRecord() {
  const std::uint64_t place = position_;
  const std::optional<BagRecord> head = bagRecordHead(source_, place);
  const BagOp op = head ? head->fields.op() : BagOp::connection;
  if (op == BagOp::connection || op == BagOp::chunkInfo) {
    finish();  // the index begins here, or is missing
    return std::nullopt;
  }
  if (op != BagOp::chunk && op != BagOp::messageIndex) {
    throw ReadError(atByte(place), "a record stands between the chunks that does not belong there");
  }
  const std::optional<BagRecord> record = bagRecord(source_, place);
  if (!record) {
    throw ReadError(atByte(place), "the recording became shorter while it was read");
  }
  if (op == BagOp::chunk) {
    openChunk(*record, place);
  } else if (!record->isWhole()) {
    throw cutOff(place, "an index of messages", record->size, record->availableSize());
  }
  position_ += record->size;
  return std::nullopt;
}

RecordedMessage BagReader::message(const BagRecord& record, std::uint64_t place) {
  RecordedMessage message;
  message.topic = connections_.topicOf(record.fields.number<std::uint32_t>("conn"), place);
  message.logged = record.fields.time("time");
  message.place = place;
  message.data = record.data;
  topics_.count(message.topic, message.logged);
  ++numMessages_;
  return message;
}

void BagReader::openChunk(const BagRecord& record, std::uint64_t place) {
  chunk_ = {};
  if (!record.isWhole()) {
    chunk_.cut = cutOff(place, "a chunk", record.size, record.availableSize());
  }
  const std::string_view compression = record.fields.text("compression").value_or("none");
  const auto unfoldedSize = record.fields.number<std::uint32_t>("size");
  if (compression == "none") {
    if (unfoldedSize != record.dataSize) {
      throw ReadError(atByte(place), "a chunk without compression has " + counted(record.dataSize, "byte") +
                                         " and claims " + std::to_string(unfoldedSize));
    }
    chunk_.rest = record.data;
    chunk_.place = place + record.size - record.dataSize;
  } else {
    chunk_.rest = chunks_.unfold({compression, record.data, unfoldedSize, chunk_.cut.has_value(), place});
    chunk_.place = place;
    chunk_.isUnfolded = true;
  }
  ++numChunks_;
}

void BagReader::finish() {
  isAtEnd_ = true;
  if (header_.indexPos == 0) {
    throw ReadError(atByte(position_),
                    "the recording is cut off: the bag was not closed, its index is missing");
  }
  if (position_ != header_.indexPos) {
    throw ReadError(atByte(position_), "the recording is cut off: its index should begin at byte " +
                                           std::to_string(header_.indexPos));
  }
  if (!index_) {
    index_ = readBagIndex(source_, header_).sums;
  }
  if (numChunks_ != header_.numChunks || numMessages_ != index_->messages) {
    throw ReadError(atByte(position_), "the bag's index counts " + counted(index_->messages, "message") +
                                           " in " + counted(header_.numChunks, "chunk") + "; the bag has " +
                                           std::to_string(numMessages_) + " in " +
                                           std::to_string(numChunks_));
  }
}

}  // namespace orvantis::toolkit
