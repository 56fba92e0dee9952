#pragma once

#include <optional>
#include <string>

#include "Recording.h"
#include "drawing/SvgPlan.h"
#include "session/SessionOptions.h"

namespace orvantis::app {

struct RunOptions {
  std::string document;
  Recording recording;
  toolkit::SessionOptions session;
  bool json = false;       ///< one object a line instead of tables
  bool reference = false;  ///< ask every zone for every point instead of the batch classifier
  bool events = false;     ///< tell what happens, also without anything else that asks for it
  std::string csvFolder;   ///< for the tables of a session; empty: none
  std::string picture;     ///< of a session; empty: none
  std::optional<toolkit::PlanContent::Extent> extent;  ///< of its plan

  /// Whether the frames have a time, and so make a session: as soon as anything is asked for that needs one.
  bool hasTime() const {
    return events || recording.hasTracks() || recording.rate || !recording.stamps.empty() ||
           !csvFolder.empty() || !picture.empty();
  }
};

}  // namespace orvantis::app
