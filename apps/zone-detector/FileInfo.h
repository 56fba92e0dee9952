#pragma once

#include <string>
#include <vector>

#include "recording/ColumnNames.h"

namespace orvantis::app {

struct Console;

struct InfoOptions {
  std::vector<std::string> files;
  toolkit::ColumnNames columns;  ///< of .bin and text files; empty: found from the file
  bool json = false;
};

/// Prints the content of each file. It goes on after a file that cannot be read.
/// @return 1 when a file could not be read, 4 when a recording is cut off, else 0
int info(const InfoOptions& options, const Console& console);

}  // namespace orvantis::app
