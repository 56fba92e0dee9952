#pragma once

#include <utility>

#include "SessionOutput.h"
#include "session/SessionPlot.h"

namespace orvantis::app {

struct RunOptions;

/// Draws a session into a file, which is written whole or not at all, at the end.
class PictureFile : public SessionOutput {
 public:
  PictureFile(const RunOptions& options, toolkit::SessionPlot plot)
      : options_(options), plot_(std::move(plot)) {}

  void add(const Moment& moment, const toolkit::SessionFrame& frame) override;
  void finish(const SessionResult& result) override;

 private:
  const RunOptions& options_;
  toolkit::SessionPlot plot_;
};

}  // namespace orvantis::app
