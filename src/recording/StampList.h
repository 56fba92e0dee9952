#pragma once

#include <istream>
#include <memory>
#include <optional>
#include <string>

#include <filter/monitor/Stamp.h>

#include "recording/RowReader.h"

namespace orvantis::toolkit {

/// The path of a frame of points, and its stamp.
struct StampedPath {
  filter::monitor::Stamp stamp{0};
  std::string path;
};

/// Reads a list of frames with their stamps. Each line has the stamp, a comma or blanks, and the path. Blank
/// lines and lines that begin with # are skipped.
class StampList {
 public:
  /// @param path names the list in messages
  StampList(std::unique_ptr<std::istream> in, std::string path) : rows_(std::move(in), std::move(path)) {}

  /// The next line; nothing at the end.
  /// @throws Failure, with the list, line, column and reason, at a bad line, also when its stamp is not later
  ///   than the one before
  std::optional<StampedPath> next();

 private:
  RowReader rows_;
  std::optional<filter::monitor::Stamp> last_;
};

}  // namespace orvantis::toolkit
