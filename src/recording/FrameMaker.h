#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "files/ByteSource.h"
#include "recording/Decoders.h"
#include "recording/FrameOptions.h"
#include "recording/FrameReader.h"
#include "recording/FrameSource.h"
#include "recording/PointFilter.h"
#include "recording/PointMover.h"
#include "recording/RecordingReader.h"

namespace orvantis::toolkit {

/// The kind of a file that is one frame, by the ending of its name.
/// @throws Failure for another ending, with those that are known
FrameKind singleFrameKindOf(const std::string& path);

/// Makes frames of files that somebody else opens: of the bytes of a single frame, or of a recording, one
/// after the other. One object is for one thread.
class FrameMaker {
 public:
  explicit FrameMaker(FrameOptions options);

  /// The frame of a file that is one frame. Its points may lie in the bytes.
  /// @throws Failure with the path, the place and the reason
  InputFrame frameOf(const std::string& path, FrameKind kind, std::span<const std::byte> bytes);

  /// Begins a recording.
  /// @throws Failure when it cannot be read
  void begin(const std::string& path, std::unique_ptr<ByteSource> source, Decoders decoders);
  bool isInRecording() const { return recording_ != nullptr; }
  /// The next frame of the recording; nothing at its end, after which another file may follow.
  /// @throws Failure with the path, the place and the reason
  std::optional<InputFrame> next();

  /// The frame of the recording that `next` gave last, with another column in place of z, without limits and
  /// pose. @throws ReadError as RecordingReader::withColumn does
  Points withColumn(std::string_view column) { return recording_->reader.withColumn(column); }

  /// The size of all files that were read to their end.
  std::uint64_t bytes() const { return bytes_; }
  /// Recordings that could not be read to their end, and those whose stamps go back.
  const std::vector<std::string>& warnings() const { return warnings_; }
  bool isDamaged() const { return isDamaged_; }

 private:
  struct Recording {
    Recording(const std::string& file, std::unique_ptr<ByteSource> opened, RecordingOptions options);

    std::string path;
    std::unique_ptr<ByteSource> source;
    RecordingReader reader;
  };

  InputFrame frameOf(const RecordedCloud& cloud);
  void finish();
  Points placed(Points points, InputFrame& frame);

  FrameOptions options_;
  FrameReader reader_;
  PointFilter filter_;
  PointMover mover_;
  std::unique_ptr<Recording> recording_;
  std::uint64_t bytes_ = 0;
  std::vector<std::string> warnings_;
  bool isDamaged_ = false;
};

}  // namespace orvantis::toolkit
