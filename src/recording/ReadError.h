#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace orvantis::toolkit {

/// The place in a file where it is wrong.
struct Place {
  std::uint64_t line = 0;    ///< from 1; 0 when the place is a byte, not a line
  std::uint64_t column = 0;  ///< in bytes from 1; 0 for the whole line
  std::uint64_t byte = 0;    ///< from 0
};

constexpr Place atByte(std::uint64_t byte) {
  return {0, 0, byte};
}
constexpr Place atLine(std::uint64_t line, std::uint64_t column = 0) {
  return {line, column, 0};
}

/// Why bytes cannot be read. `what()` has only the reason: what was found and what is allowed. The caller
/// that knows the file's name adds it.
class ReadError : public std::runtime_error {
 public:
  ReadError(const Place& place, const std::string& reason) : std::runtime_error(reason), place_(place) {}

  const Place& place() const noexcept { return place_; }

 private:
  Place place_;
};

/// "line 12, column 5", "line 12" or "byte 4096".
inline std::string toText(const Place& place) {
  if (place.line == 0) {
    return "byte " + std::to_string(place.byte);
  }
  return "line " + std::to_string(place.line) +
         (place.column == 0 ? "" : ", column " + std::to_string(place.column));
}

}  // namespace orvantis::toolkit
