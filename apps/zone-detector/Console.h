#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "files/Failure.h"

namespace orvantis::app {

// The commands use this namespace everywhere.
using namespace toolkit;  // NOLINT(google-build-using-namespace)

/// Where a command writes: data to `out`, everything else to `err`.
struct Console {
  std::ostream& out;
  std::ostream& err;
  bool colour = false;    ///< whether `out` gets colours
  bool progress = false;  ///< whether `err` is a terminal
  bool quiet = false;     ///< whether warnings are left out

  /// Flushes `out`.
  /// @throws Failure when something could not be written: the disk is full, or the reader has gone away
  void flush() const;

  void warn(const std::string& text) const;
  void warn(const std::vector<std::string>& texts) const;

  /// The text in bold, or in a colour (1 red, 2 green, 3 yellow), if colours are wanted.
  std::string bold(const std::string& text) const;
  std::string coloured(int number, const std::string& text) const;
};

}  // namespace orvantis::app
