#pragma once

#include <string>

#include "SessionOutput.h"
#include "session/SessionPlot.h"

namespace orvantis::app {

/// Draws a session into a file, which is written whole or not at all, at the end.
class PictureFile : public SessionOutput {
 public:
  /// @param document its path, which the picture names
  PictureFile(std::string path, std::string document, toolkit::SessionPlot plot)
      : path_(std::move(path)), document_(std::move(document)), plot_(std::move(plot)) {}

  void add(const Moment& moment, const toolkit::SessionFrame& frame) override;
  void finish(const SessionResult& result) override;

 private:
  std::string path_;
  std::string document_;
  toolkit::SessionPlot plot_;
};

}  // namespace orvantis::app
