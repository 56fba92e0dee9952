#pragma once

#include <string>

#include "TimeLine.h"

namespace orvantis::app {

struct Console;

struct RunOptions {
  std::string document;
  Recording recording;
  bool json = false;       ///< one object a line instead of tables
  bool reference = false;  ///< ask every zone for every point instead of the batch classifier
  std::string csvFolder;   ///< for the tables of a session; empty: none
  std::string picture;     ///< of a session; empty: none

  /// Whether the frames have a time, and so make a session: as soon as anything is asked for that needs one.
  bool hasTime() const {
    return recording.hasTracks() || recording.rate || !recording.stamps.empty() || !csvFolder.empty() ||
           !picture.empty();
  }
};

/// Counts the points of each frame in each zone and outside every exclusion zone; where frames have a time,
/// tells what happens instead.
/// @throws Failure at the first frame or row that cannot be read; what was printed before stands
int run(const RunOptions& options, const Console& console);

}  // namespace orvantis::app
