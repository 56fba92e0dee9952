#pragma once

#include <utility>

#include "SessionOutput.h"
#include "session/SessionPlot.h"

namespace orvantis::app {

struct RunOptions;

/// Draws a session into a file. The file is written at the end, whole or not at all.
class PictureFile : public SessionOutput {
 public:
  PictureFile(const RunOptions& options, toolkit::SessionPlot plot)
      : options_(options), plot_(std::move(plot)) {}

  void add(const toolkit::Moment& moment, const toolkit::SessionFrame& frame) override;
  void finish(const SessionResult& result) override;

 private:
  const RunOptions& options_;
  toolkit::SessionPlot plot_;
};

}  // namespace orvantis::app
