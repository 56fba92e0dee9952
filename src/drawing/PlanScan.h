#pragma once

#include <string>
#include <string_view>

#include "drawing/Viewport.h"

namespace orvantis::toolkit {

/// The colours of a scan: the ground, what stands a little and high above it, what counts in a zone.
struct ScanColours {
  static constexpr std::string_view ground = "#d5dbe1";
  static constexpr std::string_view low = "#93a4b5";
  static constexpr std::string_view high = "#3e5870";
  static constexpr std::string_view counted = "#b8500c";
};

/// The height that most dots are at, in steps of 0.1 m; 0 without dots.
double groundOf(const std::vector<PlanContent::Dot>& dots);

/// The dots that do not count in a zone, shaded by how high they are over the ground and how dense they are:
/// the ground is faint, what stands up is dark, so that walls, cars and people are seen.
std::string drawScan(const std::vector<PlanContent::Dot>& dots, const Viewport& view);

/// The dots that count in a zone.
std::string drawCounted(const std::vector<PlanContent::Dot>& dots, const Viewport& view);

}  // namespace orvantis::toolkit
