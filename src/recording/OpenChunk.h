#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "recording/ReadError.h"
#include "text/Text.h"

namespace orvantis::toolkit {

/// The chunk whose records are being read.
struct OpenChunk {
  std::span<const std::byte> rest;  ///< the records that are still to be read
  std::uint64_t place = 0;          ///< the byte of the file where `rest` begins
  bool isUnfolded = false;       ///< whether it was compressed, so that its bytes have no place in the file
  std::optional<ReadError> cut;  ///< for a chunk that is cut off, the error after its last whole record

  /// Moves past a record.
  void drop(std::size_t count) {
    rest = rest.subspan(count);
    place += isUnfolded ? 0 : count;
  }
};

/// The error for a record in which the file ends.
inline ReadError cutOff(std::uint64_t place, const char* what, std::uint64_t needed, std::uint64_t there) {
  return {atByte(place), "the recording is cut off: " + std::string(what) + " needs " +
                             counted(needed, "byte") + " and has " + std::to_string(there)};
}

}  // namespace orvantis::toolkit
