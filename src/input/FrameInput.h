#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <future>
#include <optional>
#include <string>
#include <vector>

#include "recording/FrameMaker.h"
#include "recording/FrameOptions.h"
#include "recording/FrameSource.h"

namespace orvantis::toolkit {

/// The frames of files, one after the other. A file is one frame, or a recording of many frames. It reads the
/// next file while a frame is used.
class FrameInput : public FrameSource {
 public:
  FrameInput(std::deque<std::string> paths, FrameOptions options);

  /// Adds a file after the others.
  void add(std::string path) { paths_.push_back(std::move(path)); }

  std::optional<InputFrame> next() override;

  std::uint64_t bytes() const override { return maker_.bytes(); }
  /// Known before the first frame is read, unless recordings are among the files.
  std::optional<std::size_t> frameCount() const override;
  std::vector<std::string> warnings() const override { return maker_.warnings(); }
  bool isDamaged() const override { return maker_.isDamaged(); }

 private:
  using Bytes = std::vector<std::byte>;

  InputFrame frameOf(const std::string& path);
  void readAhead();
  Bytes bytesOf(const std::string& path);

  std::deque<std::string> paths_;
  FrameMaker maker_;
  Bytes current_;              // of the frame that was given out last
  Bytes spare_;                // of the frame before it, to be used again
  std::future<Bytes> coming_;  // of the next file
  std::string comingPath_;
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

}  // namespace orvantis::toolkit
