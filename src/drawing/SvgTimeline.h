#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "drawing/SvgElement.h"

namespace orvantis::toolkit {

/// The content of a time line. Times are in seconds.
struct TimelineContent {
  using Interval = std::pair<double, double>;

  struct ZoneRow {
    std::string name;
    int field;
    std::vector<Interval> occupied;   ///< intervals in which points occupy it
    std::vector<Interval> inhabited;  ///< intervals in which tracked objects are inside
  };
  struct Mark {
    double time;
    bool toLeft;
    std::int32_t track;
  };
  struct LineRow {
    std::string name;
    std::vector<Mark> crossings;
  };

  double begin = 0.0;
  double end = 0.0;
  bool hasPoints = false;
  bool hasObjects = false;
  std::vector<ZoneRow> zones;
  std::vector<LineRow> lines;
};

/// A part of a picture.
struct SvgPiece {
  SvgElement body;
  double height;  ///< in pixels
};

/// Draws a row for each zone and line above an axis of time, with the names to the right of the rows.
/// @param left,top,width of the rows, in pixels
SvgPiece drawTimeline(const TimelineContent& content, double left, double top, double width);

}  // namespace orvantis::toolkit
