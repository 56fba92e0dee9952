#pragma once

#include <string>
#include <vector>

namespace orvantis::app {

struct Console;

struct RunOptions {
  std::string document;
  std::vector<std::string> clouds;
  bool json = false;       ///< one object a line instead of tables
  bool reference = false;  ///< ask every zone for every point instead of the batch classifier
};

/// Counts the points of each frame in each zone and outside every exclusion zone.
/// @throws Failure at the first frame that cannot be read; what was printed before stands
int run(const RunOptions& options, const Console& console);

}  // namespace orvantis::app
