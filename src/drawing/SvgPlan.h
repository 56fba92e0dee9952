#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <filter/detection/Point.h>

#include "drawing/SvgTimeline.h"

namespace orvantis::toolkit {

/// The content of a plan, in metres.
struct PlanContent {
  struct Field {
    int index;
    std::string name;
  };
  struct Area {
    std::string name;
    std::vector<filter::detection::Point> ring;
    std::optional<int> field;  ///< empty for an exclusion zone
  };
  struct Line {
    std::string name;
    filter::detection::Point first;
    filter::detection::Point second;
  };
  struct Dot {
    filter::detection::Point at;
    bool counted;         ///< inside a zone and outside every exclusion zone
    double height = 0.0;  ///< decides its shade
  };

  struct Track {
    std::int32_t id;
    std::vector<filter::detection::Point> path;
    std::string className = {};  ///< decides its colour
  };

  struct Crossing {
    filter::detection::Point at;
    std::string title;  ///< shown when the pointer is on it
  };
  struct Extent {
    double left;
    double right;
    double bottom;
    double top;
  };

  std::string title;
  /// The prefix of every id in the picture, because two pictures in one page must not have the same ids.
  std::string idPrefix;
  std::vector<Field> fields;
  std::vector<Area> areas;
  std::vector<Line> lines;
  std::vector<Dot> dots;
  std::vector<Track> tracks;
  std::vector<Crossing> crossings;
  std::optional<Extent> extent;             ///< of the plan; empty: that of all zones, lines and tracks
  std::optional<TimelineContent> timeline;  ///< drawn under the plan
};

/// Draws the plan as an SVG document: y up, equal scale on both axes.
/// @throws std::runtime_error when the coordinates are too far apart, or too far from the origin, to draw
std::string drawPlan(const PlanContent& content);

}  // namespace orvantis::toolkit
