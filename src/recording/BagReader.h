#pragma once

#include <cstdint>
#include <optional>

#include "files/ByteSource.h"
#include "recording/BagFile.h"
#include "recording/BagIndex.h"
#include "recording/BagRecords.h"
#include "recording/ChunkBuffer.h"
#include "recording/Decoders.h"
#include "recording/MessageReader.h"
#include "recording/OpenChunk.h"

namespace orvantis::toolkit {

/// The messages of a ROS bag of version 2.0, with or without its index. The only check sums of a bag are
/// those of bz2 and lz4.
class BagReader final : public MessageReader {
 public:
  /// The source must outlive the reader.
  /// @throws ReadError when the bag's header cannot be read
  BagReader(ByteSource& source, Decoders decoders);

  std::optional<RecordedMessage> next() override;

 private:
  std::optional<RecordedMessage> nextInChunk();
  std::optional<RecordedMessage> readRecord();
  RecordedMessage message(const BagRecord& record, std::uint64_t place);
  void openChunk(const BagRecord& record, std::uint64_t place);
  void finish();

  ByteSource& source_;
  BagHeader header_;
  std::uint64_t position_;
  ChunkBuffer chunks_;
  OpenChunk chunk_;
  BagConnections connections_;
  std::uint32_t numChunks_ = 0;
  std::uint64_t numMessages_ = 0;
  bool isAtEnd_ = false;
};

}  // namespace orvantis::toolkit
