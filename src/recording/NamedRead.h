#pragma once

#include <cstddef>
#include <new>
#include <string>

#include "files/Failure.h"
#include "recording/ReadError.h"
#include "text/Text.h"

namespace orvantis::toolkit {

/// Calls something that reads a file; what it throws then names the file.
/// @throws Failure
template <typename Read>
auto named(const std::string& path, Read read) {
  try {
    return read();
  } catch (const ReadError& error) {
    const Place& place = error.place();
    const std::string reason = printable(error.what());
    if (place.line != 0) {
      throw Failure(path, static_cast<std::size_t>(place.line), static_cast<std::size_t>(place.column),
                    "cannot be read: " + reason);
    }
    // A fault at byte 0 concerns the whole file, so the byte is not named.
    const std::string where = place.byte == 0 ? "" : "byte " + std::to_string(place.byte) + ": ";
    throw Failure(path, "cannot be read: " + where + reason);
  } catch (const std::bad_alloc&) {
    throw Failure(path, "cannot be read: not enough memory");
  }
}

}  // namespace orvantis::toolkit
