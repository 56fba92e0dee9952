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

/// Options for reading the points of frames from files.
struct FrameOptions {
  toolkit::ColumnNames columns;     ///< of .bin and text files; empty: found from the file
  std::vector<std::string> topics;  ///< of recordings; empty: the only topic
  toolkit::StampFrom stampFrom = toolkit::StampFrom::header;
  toolkit::PointLimits limits;
  std::optional<toolkit::Pose>
      pose;  ///< of the sensor in the frame of the site; empty: the points are in that frame
};

/// The frames of files, one after the other. A file is one frame, or a recording of many frames. It reads the
/// next file while a frame is used.
class FrameInput : public FrameSource {
 public:
  FrameInput(std::deque<std::string> paths, FrameOptions options);

  /// Adds a file after the others.
  void add(std::string path) { paths_.push_back(std::move(path)); }

  std::optional<InputFrame> next() override;

  std::uint64_t bytes() const override { return bytes_; }
  /// Known before the first frame is read, unless recordings are among the files.
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
  Bytes current_;              // of the frame that was given out last
  Bytes spare_;                // of the frame before it, to be used again
  std::future<Bytes> coming_;  // of the next file
  std::string comingPath_;
  std::unique_ptr<OpenRecording> recording_;
  std::uint64_t bytes_ = 0;
  std::vector<std::string> warnings_;
  bool isDamaged_ = false;
};

/// Whether the first bytes of a file are those of a recording.
/// @throws Failure when they cannot be read
bool isRecordingFile(const std::string& path);

/// The files that the user's words mean. A folder stands for the frames and recordings in it: if all are
/// recordings, in the order of their first stamps, else in the natural order of their names. "-" stands for a
/// list of paths on the standard input, one per line.
/// @param options used to read the first stamps
/// @throws Failure for a folder without frames and recordings, and when a list cannot be read
std::deque<std::string> filesOf(const std::vector<std::string>& words, const FrameOptions& options);

}  // namespace orvantis::app
