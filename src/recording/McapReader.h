#pragma once

#include <cstdint>
#include <optional>

#include "files/ByteSource.h"
#include "recording/ChunkBuffer.h"
#include "recording/Decoders.h"
#include "recording/McapClosing.h"
#include "recording/McapRecords.h"
#include "recording/MessageReader.h"
#include "recording/OpenChunk.h"

namespace orvantis::toolkit {

/// The messages of an MCAP file, with or without chunks and index.
///
/// Every CRC in the file is checked: that of a chunk before its messages are given, and that of all data at
/// their end.
class McapReader final : public MessageReader {
 public:
  /// The source must outlive the reader.
  McapReader(ByteSource& source, Decoders decoders);

  std::optional<RecordedMessage> next() override;

 private:
  std::optional<RecordedMessage> nextInChunk();
  std::optional<RecordedMessage> readRecord();
  RecordedMessage readMessage(std::uint64_t length, std::uint64_t place);
  RecordedMessage noted(const McapMessageHeader& header, std::uint64_t place);
  void addDeclaration(McapOpcode opcode, std::span<const std::byte> content, std::uint64_t place);
  void openChunk(std::uint64_t length, std::uint64_t place);
  void openPlainChunk(const McapChunkHeader& header, std::span<const std::byte> content, std::uint64_t place);
  void openFoldedChunk(const McapChunkHeader& header, std::span<const std::byte> content,
                       std::uint64_t place);
  void finish(std::uint64_t length, std::uint64_t place);

  std::span<const std::byte> take(std::uint64_t count, std::uint64_t place, const char* what);
  void skip(std::uint64_t count, std::uint64_t place, const char* what);
  void addToDataCrc(std::span<const std::byte> bytes);

  ByteSource& source_;
  std::uint64_t position_ = mcapMagic.size();
  ChunkBuffer chunks_;
  OpenChunk chunk_;
  McapVocabulary vocabulary_;
  std::optional<McapClosing> closing_;
  bool isDataCrcWanted_ = true;
  std::uint32_t dataCrc_ = 0;
  std::uint64_t numMessages_ = 0;
  bool isAtEnd_ = false;
};

}  // namespace orvantis::toolkit
