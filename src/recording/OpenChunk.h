#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "recording/ReadError.h"
#include "text/Text.h"

namespace orvantis::toolkit {

/// The chunk whose records are read at the moment.
struct OpenChunk {
  std::span<const std::byte> rest;  ///< the records that are still to be read
  std::uint64_t place = 0;          ///< the byte of the file where `rest` begins
  bool isUnfolded = false;          ///< the bytes of a compressed chunk have no place of their own
  std::optional<ReadError> cut;     ///< what to say after the last whole record of a chunk that is cut off

  /// Moves past a record.
  void drop(std::size_t count) {
    rest = rest.subspan(count);
    place += isUnfolded ? 0 : count;
  }
};

/// The words for a record that the file ends in.
inline ReadError cutOff(std::uint64_t place, const char* what, std::uint64_t needed, std::uint64_t there) {
  return {atByte(place), "the recording is cut off: " + std::string(what) + " needs " +
                             counted(needed, "byte") + " and has " + std::to_string(there)};
}

}  // namespace orvantis::toolkit
