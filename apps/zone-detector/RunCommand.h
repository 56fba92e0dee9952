#pragma once

#include <optional>
#include <string>

#include "drawing/SvgPlan.h"
#include "input/Recording.h"
#include "session/SessionOptions.h"

namespace orvantis::app {

struct RunOptions {
  std::string document;
  toolkit::Recording recording;
  toolkit::SessionOptions session;
  bool json = false;       ///< one object per line instead of tables
  bool reference = false;  ///< ask every zone about every point instead of the batch classifier
  bool events = false;     ///< print what happens, even if no other option asks for it
  std::string csvFolder;   ///< the folder for the tables of a session; empty for none
  std::string picture;     ///< the file for the picture of a session; empty for none
  std::optional<toolkit::PlanContent::Extent> extent;  ///< of its plan

  /// Whether the frames have stamps and so make a session. They do if any option needs stamps.
  bool hasTime() const {
    return events || recording.hasTracks() || recording.rate || !recording.stamps.empty() ||
           !csvFolder.empty() || !picture.empty();
  }
};

}  // namespace orvantis::app
