#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "RecordingFiles.h"

namespace orvantis::engine {

/// Reads the points of single moments out of the files of a recording. Files are read onwards, so the moment
/// after the last one costs the least, and one before it the most.
class MomentWalk {
 public:
  MomentWalk(const RecordingFiles& files, const RecordingOptions& options)
      : files_(files), options_(options) {}

  /// The points at a moment; valid until the next call.
  /// @throws Failure when there are none, or when the files cannot be read
  const toolkit::InputFrame& frameAt(std::size_t moment);
  /// Of the frame that was given last, in the order of its points; empty where its file has none.
  std::vector<float> intensities() { return opened_->clouds->intensities(); }

 private:
  const RecordingFiles& files_;
  const RecordingOptions& options_;
  std::optional<OpenedFiles> opened_;
  std::size_t numRead_ = 0;
  std::optional<toolkit::Moment> last_;
};

}  // namespace orvantis::engine
