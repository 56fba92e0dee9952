#pragma once

#include <optional>
#include <vector>

#include "CloudStream.h"
#include "recording/FrameOptions.h"
#include "recording/TimeLine.h"
#include "recording/TrackReader.h"

namespace orvantis::engine {

/// Where the frames of a recording come from.
struct RecordingFiles {
  std::vector<NamedSource> clouds;  ///< where there is a list, those that it names are taken of them
  std::optional<NamedSource> stamps;
  std::optional<NamedSource> tracks;
};

struct RecordingOptions {
  toolkit::FrameOptions frames;
  std::optional<double> rate;  ///< of single frames in Hz; none: 10
  toolkit::TracksFormat tracksFormat = toolkit::TracksFormat::Csv;
};

/// A recording that is being read.
struct OpenedFiles {
  toolkit::TimeLine timeLine;
  CloudStream* clouds;  ///< its frames; never null
};

/// Opens the frames and the tracks. Nothing but the list is read before it is needed.
/// @throws Failure when the list or the tracks cannot be read or are wrong
OpenedFiles openFiles(const RecordingFiles& files, const RecordingOptions& options);

}  // namespace orvantis::engine
