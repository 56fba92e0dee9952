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
#include "recording/FrameMaker.h"
#include "recording/FrameOptions.h"
#include "recording/FrameReader.h"
#include "recording/FrameSource.h"

namespace orvantis::engine {

/// A file that somebody dropped on the page. What it is read into lives no longer than it is read.
struct NamedSource {
  std::string name;
  std::uint64_t size = 0;
  std::function<std::unique_ptr<toolkit::ByteSource>()> open;
};

/// The frames of files, one after the other. A file is one frame, or a recording of many, which is read by
/// ranges.
class CloudStream final : public toolkit::FrameSource {
 public:
  /// @param stamps of the files, which are then single frames; empty: they have none, or their own
  CloudStream(std::vector<NamedSource> files, std::vector<filter::monitor::Stamp> stamps,
              toolkit::FrameOptions options);

  std::optional<toolkit::InputFrame> next() override;

  /// How strongly each point of the frame that `next` gave last was reflected, in the order of its points and
  /// in the unit of its file. Empty where the file says nothing of it, or points were left out.
  /// @throws std::bad_alloc
  std::vector<float> intensities();

  std::uint64_t bytes() const override { return maker_.bytes(); }
  std::optional<std::size_t> frameCount() const override { return std::nullopt; }
  std::vector<std::string> warnings() const override { return maker_.warnings(); }
  bool isDamaged() const override { return maker_.isDamaged(); }

 private:
  std::optional<toolkit::InputFrame> nextFrame();
  toolkit::Points lastWith(const std::string& column);

  std::vector<NamedSource> files_;
  std::vector<filter::monitor::Stamp> stamps_;
  toolkit::FrameOptions options_;
  std::size_t numOpened_ = 0;
  std::unique_ptr<toolkit::ByteSource> source_;  // of the single frame that was given out last
  toolkit::FrameMaker maker_;
  toolkit::FrameReader columnReader_;     // beside the points of a frame
  std::optional<std::string> intensity_;  // the column of the frame that was given last
};

}  // namespace orvantis::engine
