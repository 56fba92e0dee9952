#pragma once

#include <istream>
#include <memory>
#include <optional>
#include <string>

#include <filter/monitor/Stamp.h>

#include "recording/RowReader.h"

namespace orvantis::toolkit {

/// A frame of points and when it was taken.
struct StampedPath {
  filter::monitor::Stamp stamp{0};
  std::string path;
};

/// Reads a list of frames with their stamps: a line for each, its stamp, a comma or blanks, its path. Blank
/// lines and those that begin with # are passed over.
class StampList {
 public:
  /// @param path names the list in messages
  StampList(std::unique_ptr<std::istream> in, std::string path) : rows_(std::move(in), std::move(path)) {}

  /// The next line; nothing at the end.
  /// @throws Failure at a bad line, with the list, line, column and reason; a stamp that is not later than
  /// the
  ///   one before is one
  std::optional<StampedPath> next();

 private:
  RowReader rows_;
  std::optional<filter::monitor::Stamp> last_;
};

}  // namespace orvantis::toolkit
