#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <filter/monitor/Stamp.h>

#include "files/FileSource.h"
#include "recording/ColumnNames.h"
#include "recording/FrameReader.h"
#include "recording/PointFilter.h"
#include "recording/PointMover.h"
#include "recording/Pose.h"
#include "recording/RecordingReader.h"

namespace orvantis::app {

struct Console;

/// How the bytes of files become the points of frames.
struct FrameOptions {
  toolkit::ColumnNames columns;     ///< of .bin and text files; none: found out
  std::vector<std::string> topics;  ///< of recordings; none: the only one
  toolkit::StampFrom stampFrom = toolkit::StampFrom::header;
  toolkit::PointLimits limits;
  std::optional<toolkit::Pose> pose;  ///< of the sensor in the frame of the site; none: the points are in it
};

/// A frame of points.
struct InputFrame {
  std::string file;                             ///< as it was given
  std::string topic;                            ///< of a recording; empty: the file is one frame
  std::optional<filter::monitor::Stamp> stamp;  ///< of a recording
  toolkit::Points points;  ///< in the frame of the site; valid until the next frame is read
  std::vector<toolkit::Column> columns;
  std::uint64_t atOrigin = 0;  ///< points at exactly (0, 0, 0), those that were dropped among them
  toolkit::DroppedPoints dropped;
};

/// The frames of files, one after the other. A file is one frame, or a recording of many. While a frame is
/// worked on, the next file is read.
class FrameInput {
 public:
  FrameInput(std::deque<std::string> paths, FrameOptions options);

  /// One more file behind the others.
  void add(std::string path) { paths_.push_back(std::move(path)); }

  /// @return nothing at the end
  /// @throws Failure with the path, the place and the reason
  std::optional<InputFrame> next();

  /// Bytes of files that were opened so far.
  std::uint64_t bytes() const { return bytes_; }
  /// What is left of the files to be opened.
  std::size_t filesLeft() const { return paths_.size(); }

  /// Recordings that could not be read to their end, in words, and those whose stamps go back.
  const std::vector<std::string>& warnings() const { return warnings_; }
  bool isDamaged() const { return isDamaged_; }

 private:
  using Bytes = std::vector<std::byte>;

  struct OpenRecording {
    OpenRecording(const std::string& path, const FrameOptions& options);

    std::string path;
    toolkit::FileSource source;
    toolkit::RecordingReader reader;
  };

  std::optional<InputFrame> nextOfRecording();
  InputFrame frameOf(const std::string& path);
  void finish(const OpenRecording& recording);
  void readAhead();
  Bytes bytesOf(const std::string& path);
  toolkit::Points placed(toolkit::Points points, InputFrame& frame);

  std::deque<std::string> paths_;
  FrameOptions options_;
  toolkit::FrameReader reader_;
  toolkit::PointFilter filter_;
  toolkit::PointMover mover_;
  Bytes current_;              // the frame that was given out
  Bytes spare_;                // the one before, to be used again
  std::future<Bytes> coming_;  // the next one
  std::string comingPath_;
  std::unique_ptr<OpenRecording> recording_;
  std::uint64_t bytes_ = 0;
  std::vector<std::string> warnings_;
  bool isDamaged_ = false;
};

/// The files that a user's words mean: a folder is the frames and recordings in it, in the natural order of
/// their names, "-" a list from the standard input, a path a line.
/// @throws Failure for a folder without any, and when a list cannot be read
std::deque<std::string> filesOf(const std::vector<std::string>& words);

}  // namespace orvantis::app
