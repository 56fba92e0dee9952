#pragma once

#include <orvantis/Api.h>

namespace orvantis::filter::detection {

/// A point of the plan, in the frame and unit of the tested points. Any double is accepted; copies are bit
/// for bit.
class ORVANTIS_API Point {
 public:
  Point(double x, double y) noexcept : x_(x), y_(y) {}

  void set(double x, double y) noexcept {
    x_ = x;
    y_ = y;
  }
  double x() const noexcept { return x_; }
  double y() const noexcept { return y_; }

 private:
  double x_;
  double y_;
};

}  // namespace orvantis::filter::detection
