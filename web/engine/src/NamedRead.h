#pragma once

#include <cstddef>
#include <new>
#include <string>

#include "files/Failure.h"
#include "recording/ReadError.h"
#include "text/Text.h"

namespace orvantis::engine {

/// Calls something that reads a file; what it throws then names the file.
/// @throws Failure
template <typename Read>
auto named(const std::string& name, Read read) {
  try {
    return read();
  } catch (const toolkit::ReadError& error) {
    const toolkit::Place& place = error.place();
    const std::string reason = toolkit::printable(error.what());
    if (place.line != 0) {
      throw toolkit::Failure(name, static_cast<std::size_t>(place.line),
                             static_cast<std::size_t>(place.column), "cannot be read: " + reason);
    }
    // At the first byte it is the file as a whole that is at fault.
    const std::string where = place.byte == 0 ? "" : "byte " + std::to_string(place.byte) + ": ";
    throw toolkit::Failure(name, "cannot be read: " + where + reason);
  } catch (const std::bad_alloc&) {
    throw toolkit::Failure(name, "cannot be read: not enough memory");
  }
}

}  // namespace orvantis::engine
