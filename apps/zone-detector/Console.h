#pragma once

#include <ostream>
#include <stdexcept>
#include <string>

namespace orvantis::app {

/// Why a command cannot do what was asked. The text names the file; main prints it and ends with code 1.
struct Failure : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Where a command writes: data to `out`, everything else to `err`.
struct Console {
  std::ostream& out;
  std::ostream& err;
  bool colour = false;    ///< of what is written to `out`
  bool progress = false;  ///< whether somebody watches `err`

  /// Makes sure that what was written so far arrived.
  /// @throws Failure when it did not: a full disk, a reader that went away
  void flush() const;

  void warn(const std::string& text) const;

  /// The text in bold, or in a colour (1 red, 2 green, 3 yellow), where colours are wanted.
  std::string bold(const std::string& text) const;
  std::string coloured(int number, const std::string& text) const;
};

}  // namespace orvantis::app
