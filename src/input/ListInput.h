#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include <filter/monitor/Stamp.h>

#include "input/FrameInput.h"
#include "recording/FrameOptions.h"
#include "recording/FrameSource.h"
#include "recording/StampList.h"

namespace orvantis::toolkit {

/// The frames of a list, with the stamps that it gives them. A list on the standard input is read line by
/// line; one in a file is read at once, so that a wrong line is told before any frame is read.
class ListInput : public FrameSource {
 public:
  /// @throws Failure when the list cannot be read or is wrong
  ListInput(const std::string& path, const FrameOptions& options);

  std::optional<InputFrame> next() override;

  std::uint64_t bytes() const override { return files_.bytes(); }
  std::optional<std::size_t> frameCount() const override;
  std::vector<std::string> warnings() const override { return files_.warnings(); }
  bool isDamaged() const override { return files_.isDamaged(); }

 private:
  FrameInput files_;
  std::optional<StampList> list_;              // on the standard input, until its end
  std::deque<filter::monitor::Stamp> stamps_;  // of the next frames, as far as the list was read
};

}  // namespace orvantis::toolkit
