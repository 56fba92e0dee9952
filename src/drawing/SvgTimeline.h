#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "drawing/SvgElement.h"

namespace orvantis::toolkit {

/// What happened when; times in seconds.
struct TimelineContent {
  using Interval = std::pair<double, double>;

  struct ZoneRow {
    std::string name;
    int field;
    std::vector<Interval> occupied;   ///< by points
    std::vector<Interval> inhabited;  ///< by tracked objects
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

/// A piece of a picture.
struct SvgPiece {
  SvgElement body;
  double height;  ///< in pixels
};

/// Draws a row for each zone and line over an axis of time; their names stand to the right of it.
/// @param left,top,width of the rows, in pixels
SvgPiece drawTimeline(const TimelineContent& content, double left, double top, double width);

}  // namespace orvantis::toolkit
