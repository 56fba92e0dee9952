#pragma once

#include <vector>

#include <filter/detection/Point.h>

#include "drawing/LabelPlacer.h"
#include "drawing/SvgPlan.h"

namespace orvantis::toolkit {

// The place of the plan in the picture, in pixels.
inline constexpr double marginLeft = 62.0;
inline constexpr double marginTop = 48.0;

// The rectangle of the plane that the plan shows, and its place in the picture.
class Viewport {
 public:
  /// @throws std::runtime_error when the sides are too far apart, or too far from the origin, to draw
  Viewport(double left, double right, double bottom, double top);

  Pixel toPixel(const filter::detection::Point& p) const {
    return {marginLeft + (p.x() - left_) * scale_, marginTop + (top_ - p.y()) * scale_};
  }
  PixelRing toPixels(const std::vector<filter::detection::Point>& ring) const;
  PixelBox box() const { return {marginLeft, marginTop, size_.x, size_.y}; }

  double left() const { return left_; }
  double right() const { return left_ + size_.x / scale_; }
  double top() const { return top_; }
  double bottom() const { return top_ - size_.y / scale_; }
  double scale() const { return scale_; }

 private:
  double left_;
  double top_;
  double scale_ = 1.0;
  Pixel size_;
};

/// The extent that the content asks for. If it asks for none, that of all zones, lines and tracks; if there
/// are none, that of the scan.
Viewport viewportFor(const PlanContent& content);

}  // namespace orvantis::toolkit
