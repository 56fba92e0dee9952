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
  std::optional<RecordingIndex> index;  ///< from the statistics, where there are any
};

/// Reads what stands from `begin` to the end of the file.
/// @throws ReadError when it is damaged or cut off
McapClosing readMcapClosing(ByteSource& source, std::uint64_t begin);

/// The same where the end of the file says that it begins; nothing when it is not there, or is not sound.
std::optional<McapClosing> findMcapClosing(ByteSource& source);

}  // namespace orvantis::toolkit
