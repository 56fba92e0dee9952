#pragma once

#include <cstdint>
#include <optional>

#include "files/ByteSource.h"
#include "recording/BagRecords.h"

namespace orvantis::toolkit {

/// The record at a byte of a bag, without its data; nothing at the end of the bag. Valid until the next call
/// of the source.
/// @throws ReadError when its header is damaged or cut off
std::optional<BagRecord> bagRecordHead(ByteSource& source, std::uint64_t place);

/// The same with the data that are there.
std::optional<BagRecord> bagRecord(ByteSource& source, std::uint64_t place);

/// The content of the first record of a bag.
struct BagHeader {
  std::uint64_t end = 0;       ///< the byte after the record
  std::uint64_t indexPos = 0;  ///< 0 when the bag was not closed
  std::uint32_t numConnections = 0;
  std::uint32_t numChunks = 0;
};

/// @throws ReadError when the record is missing or damaged, or says that the bag is encrypted
BagHeader readBagHeader(ByteSource& source);

}  // namespace orvantis::toolkit
