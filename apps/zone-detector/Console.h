#pragma once

#include <ostream>
#include <string>

#include "files/Failure.h"

namespace orvantis::app {

// What the commands are made of is found without its name.
using namespace toolkit;  // NOLINT(google-build-using-namespace)

/// Where a command writes: data to `out`, everything else to `err`.
struct Console {
  std::ostream& out;
  std::ostream& err;
  bool colour = false;    ///< of what is written to `out`
  bool progress = false;  ///< whether somebody watches `err`
  bool quiet = false;     ///< no warnings

  /// Makes sure that what was written so far arrived.
  /// @throws Failure when it did not: a full disk, a reader that went away
  void flush() const;

  void warn(const std::string& text) const;

  /// The text in bold, or in a colour (1 red, 2 green, 3 yellow), where colours are wanted.
  std::string bold(const std::string& text) const;
  std::string coloured(int number, const std::string& text) const;
};

}  // namespace orvantis::app
