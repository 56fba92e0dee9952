#pragma once

#include <optional>
#include <string>
#include <vector>

#include "recording/ColumnNames.h"
#include "recording/PointFilter.h"
#include "recording/Pose.h"
#include "recording/RecordingReader.h"

namespace orvantis::toolkit {

/// How the bytes of files become the points of frames.
struct FrameOptions {
  ColumnNames columns;  ///< of .bin and text files; empty: found from the file
  TopicNames topics;    ///< of recordings; empty: the only topic
  StampFrom stampFrom = StampFrom::header;
  PointLimits limits;
  std::optional<Pose> pose;  ///< of the sensor in the frame of the site; empty: the points are in that frame
};

}  // namespace orvantis::toolkit
