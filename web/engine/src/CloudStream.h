#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <filter/monitor/Stamp.h>

#include "files/ByteSource.h"
#include "recording/ColumnNames.h"
#include "recording/FrameReader.h"
#include "recording/PointFilter.h"
#include "recording/PointMover.h"
#include "recording/Pose.h"
#include "recording/RecordingReader.h"

namespace orvantis::engine {

/// A file that somebody dropped on the page. What it is read into lives no longer than it is read.
struct NamedSource {
  std::string name;
  std::uint64_t size = 0;
  std::function<std::unique_ptr<toolkit::ByteSource>()> open;
};

/// How the bytes of files become the points of frames.
struct FrameOptions {
  toolkit::ColumnNames columns;     ///< of .bin and text files; none: found out
  std::vector<std::string> topics;  ///< of recordings; none: the only one
  toolkit::StampFrom stampFrom = toolkit::StampFrom::header;
  toolkit::PointLimits limits;
  std::optional<toolkit::Pose> pose;  ///< of the sensor in the frame of the site; none: the points are in it
};

/// A frame of points.
struct CloudFrame {
  std::string file;
  std::string topic;                            ///< of a recording; empty: the file is one frame
  std::optional<filter::monitor::Stamp> stamp;  ///< of a recording
  toolkit::Points points;                       ///< in the frame of the site; valid until the next frame
  std::vector<toolkit::Column> columns;
  std::uint64_t atOrigin = 0;  ///< points at exactly (0, 0, 0), those that were dropped among them
  toolkit::DroppedPoints dropped;
};

/// The frames of files, one after the other. A file is one frame, or a recording of many, which is read by
/// ranges.
class CloudStream {
 public:
  CloudStream(std::vector<NamedSource> files, FrameOptions options);

  /// @return nothing at the end
  /// @throws Failure with the name, the place and the reason
  std::optional<CloudFrame> next();

  /// How strongly each point of the frame that `next` gave last was reflected, in the order of its points and
  /// in the unit of its file. Empty where the file says nothing of it, or points were left out.
  /// @throws std::bad_alloc
  std::vector<float> intensities();

  /// Bytes of files that were wholly read so far.
  std::uint64_t bytes() const { return bytes_; }
  /// Recordings that could not be read to their end, in words, and those whose stamps go back.
  const std::vector<std::string>& warnings() const { return warnings_; }

 private:
  std::optional<CloudFrame> nextOfRecording();
  CloudFrame frameOf(const NamedSource& file);
  void finish();
  toolkit::Points placed(toolkit::Points points, CloudFrame& frame);
  toolkit::Points lastWith(const std::string& column);

  std::vector<NamedSource> files_;
  FrameOptions options_;
  std::size_t numOpened_ = 0;
  toolkit::FrameReader reader_;
  toolkit::FrameReader columnReader_;  // beside the points of a frame
  toolkit::PointFilter filter_;
  toolkit::PointMover mover_;
  std::unique_ptr<toolkit::ByteSource> source_;          // the file that was opened last
  std::unique_ptr<toolkit::RecordingReader> recording_;  // of it; null: it is one frame
  std::optional<std::string> intensity_;                 // the column of the frame that was given last
  std::uint64_t bytes_ = 0;
  std::vector<std::string> warnings_;
};

}  // namespace orvantis::engine
