#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "FrameSource.h"
#include "files/FileSource.h"
#include "recording/ColumnNames.h"
#include "recording/FrameReader.h"
#include "recording/PointFilter.h"
#include "recording/PointMover.h"
#include "recording/Pose.h"
#include "recording/RecordingReader.h"

namespace orvantis::app {

/// How the bytes of files become the points of frames.
struct FrameOptions {
  toolkit::ColumnNames columns;     ///< of .bin and text files; none: found out
  std::vector<std::string> topics;  ///< of recordings; none: the only one
  toolkit::StampFrom stampFrom = toolkit::StampFrom::header;
  toolkit::PointLimits limits;
  std::optional<toolkit::Pose> pose;  ///< of the sensor in the frame of the site; none: the points are in it
};

/// The frames of files, one after the other. A file is one frame, or a recording of many. While a frame is
/// worked on, the next file is read.
class FrameInput : public FrameSource {
 public:
  FrameInput(std::deque<std::string> paths, FrameOptions options);

  /// One more file behind the others.
  void add(std::string path) { paths_.push_back(std::move(path)); }

  std::optional<InputFrame> next() override;

  std::uint64_t bytes() const override { return bytes_; }
  /// Before the first one is read; not where there are recordings among the files.
  std::optional<std::size_t> frameCount() const override;
  std::vector<std::string> warnings() const override { return warnings_; }
  bool isDamaged() const override { return isDamaged_; }

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

/// Whether the first bytes of a file are those of a recording.
/// @throws Failure when they cannot be read
bool isRecordingFile(const std::string& path);

/// The files that a user's words mean: a folder is the frames and recordings in it, recordings in the order
/// of their first stamps, else all of them in the natural order of their names; "-" is a list from the
/// standard input, a path a line.
/// @param options for the first stamps
/// @throws Failure for a folder without any, and when a list cannot be read
std::deque<std::string> filesOf(const std::vector<std::string>& words, const FrameOptions& options);

}  // namespace orvantis::app
