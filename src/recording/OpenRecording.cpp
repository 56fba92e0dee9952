#include "recording/OpenRecording.h"

#include <string_view>

#include "recording/BagReader.h"
#include "recording/BagRecords.h"
#include "recording/McapReader.h"
#include "recording/McapRecords.h"
#include "recording/ReadError.h"
#ifdef ORVANTIS_HAS_ZSTD
#include "recording/ZstdSource.h"
#endif

namespace orvantis::toolkit {
namespace {

constexpr std::uint64_t longestMagic = 16;
constexpr std::string_view mcapBegin = "\x89MCAP";
constexpr std::string_view zstdMagic = "\x28\xB5\x2F\xFD";
constexpr std::string_view anyBagMagic = "#ROS";  // "#ROSBAG V2.0", "#ROSRECORD V1.1" and others
constexpr std::string_view sqliteMagic = "SQLite format 3";

std::string_view textOf(std::span<const std::byte> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::unique_ptr<ByteSource> unfoldedSource(ByteSource& source) {
#ifdef ORVANTIS_HAS_ZSTD
  return std::make_unique<ZstdSource>(source);
#else
  static_cast<void>(source);
  throw ReadError(atByte(0), "the file is compressed as a whole with zstd, which this build cannot read");
#endif
}

// Why bytes that are not an MCAP file and not a bag of version 2.0 cannot be read.
const char* refusal(std::string_view begin) {
  if (begin.starts_with(mcapBegin)) {
    return "this version of MCAP is not known; version 0 can be read";
  }
  if (begin.starts_with(anyBagMagic)) {
    return "this version of a ROS bag is not known; version 2.0 can be read";
  }
  if (begin.starts_with(sqliteMagic)) {
    return "this is a database; convert it to MCAP with: ros2 bag convert";
  }
  if (begin.starts_with(zstdMagic)) {
    return "the file is compressed twice";
  }
  return "this is not a recording; MCAP and ROS bags of version 2.0 can be read";
}

}  // namespace

bool isRecording(std::span<const std::byte> begin) {
  const std::string_view text = textOf(begin);
  return text.starts_with(mcapBegin) || text.starts_with(anyBagMagic) || text.starts_with(sqliteMagic) ||
         text.starts_with(zstdMagic);
}

OpenRecording openRecording(ByteSource& source, const Decoders& decoders) {
  OpenRecording opened;
  ByteSource* content = &source;
  if (textOf(source.bytes(0, longestMagic)).starts_with(zstdMagic)) {
    opened.unfolded = unfoldedSource(source);
    content = opened.unfolded.get();
  }
  const std::string_view begin = textOf(content->bytes(0, longestMagic));
  if (begin.starts_with(
          std::string_view(reinterpret_cast<const char*>(mcapMagic.data()), mcapMagic.size()))) {
    opened.kind = RecordingKind::mcap;
    opened.messages = std::make_unique<McapReader>(*content, decoders);
  } else if (begin.starts_with(bagMagic)) {
    opened.kind = RecordingKind::bag;
    opened.messages = std::make_unique<BagReader>(*content, decoders);
  } else {
    throw ReadError(atByte(0), refusal(begin));
  }
  return opened;
}

}  // namespace orvantis::toolkit
