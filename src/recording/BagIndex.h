#pragma once

#include <cstdint>
#include <optional>

#include "files/ByteSource.h"
#include "recording/BagFile.h"
#include "recording/BagRecords.h"
#include "recording/MessageReader.h"

namespace orvantis::toolkit {

/// What follows the chunks of a bag: its connections, and the content of each chunk.
struct BagIndex {
  BagConnections connections;
  TopicTable topics;  ///< with their numbers of messages
  RecordingIndex sums;
};

/// Reads from the position that the bag's header names to the end.
/// @throws ReadError when the index is damaged or cut off, or does not have the numbers that the header says
BagIndex readBagIndex(ByteSource& source, const BagHeader& header);

}  // namespace orvantis::toolkit
