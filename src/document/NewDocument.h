#pragma once

#include <string>

#include <filter/detection/Point.h>

namespace orvantis::toolkit {

/// What is known of a place before its first document is written: where its data lies on the plan, and how
/// high its ground is, in the frame of the points.
struct Site {
  filter::detection::Point low{-10.0, -10.0};
  filter::detection::Point high{10.0, 10.0};
  double ground = 0.0;
};

/// A first document for a site, to be changed: a zone and a counter line in the middle of the data, between
/// heights at which people are. JSON has no comments, so the names say what to do. Checking it finds nothing.
/// @param site finite and not the wrong way round
std::string newDocument(const Site& site);

}  // namespace orvantis::toolkit
