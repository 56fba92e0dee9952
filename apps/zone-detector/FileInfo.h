#pragma once

#include <string>
#include <vector>

#include "recording/ColumnNames.h"

namespace orvantis::app {

struct Console;

struct InfoOptions {
  std::vector<std::string> files;
  toolkit::ColumnNames columns;  ///< of .bin and text files; none: found out
  bool json = false;
};

/// Says what each file holds. A file that cannot be read does not keep the others from being told.
/// @return 1 when one could not be read, 4 when a recording was cut, else 0
int info(const InfoOptions& options, const Console& console);

}  // namespace orvantis::app
