#pragma once

#include <cstdint>
#include <optional>

#include "files/ByteSource.h"
#include "recording/BagFile.h"
#include "recording/BagRecords.h"
#include "recording/MessageReader.h"

namespace orvantis::toolkit {

/// What follows the chunks of a bag: its connections, and what each chunk holds.
struct BagIndex {
  BagConnections connections;
  TopicTable topics;  ///< with the number of their messages
  RecordingIndex sums;
};

/// Reads from the position that the bag's header names to the end.
/// @throws ReadError when the index is damaged or cut off, or has not what the header counts
BagIndex readBagIndex(ByteSource& source, const BagHeader& header);

}  // namespace orvantis::toolkit
