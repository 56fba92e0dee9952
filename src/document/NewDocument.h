#pragma once

#include <string>

#include <filter/detection/Point.h>

namespace orvantis::toolkit {

/// What is known of a site before its first document is written: the extent of its data on the plan, and the
/// height of its ground, in the frame of the points.
struct Site {
  filter::detection::Point low{-10.0, -10.0};
  filter::detection::Point high{10.0, 10.0};
  double ground = 0.0;
};

/// A first document for a site, which the user changes: a zone and a counter line in the middle of the data,
/// at the heights of people. JSON has no comments, so the names say what to do. `check` has no findings about
/// it.
/// @param site finite, and each lower bound at most its upper bound
std::string newDocument(const Site& site);

}  // namespace orvantis::toolkit
