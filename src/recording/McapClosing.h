#pragma once

#include <cstdint>
#include <optional>

#include "files/ByteSource.h"
#include "recording/McapRecords.h"
#include "recording/MessageReader.h"

namespace orvantis::toolkit {

/// What follows the data of an MCAP file: the summary, which may be missing, and the footer.
struct McapClosing {
  std::uint64_t begin = 0;  ///< its first byte, which follows the record that ends the data
  McapVocabulary vocabulary;
  TopicTable topics;
  std::optional<RecordingIndex> index;  ///< from the statistics; empty when there are none
};

/// Reads from `begin` to the end of the file.
/// @throws ReadError when it is damaged or cut off
McapClosing readMcapClosing(ByteSource& source, std::uint64_t begin);

/// The same, beginning where the end of the file says; nothing when it is missing or damaged.
std::optional<McapClosing> findMcapClosing(ByteSource& source);

}  // namespace orvantis::toolkit
