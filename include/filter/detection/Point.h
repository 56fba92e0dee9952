#pragma once

#include <orvantis/Api.h>

namespace orvantis::filter::detection {

/// A point of the plan, in the frame and unit of the tested points. Any double is accepted.
class ORVANTIS_API Point {
 public:
  Point(double x, double y) : x_(x), y_(y) {}

  void set(double x, double y) {
    x_ = x;
    y_ = y;
  }
  double x() const { return x_; }
  double y() const { return y_; }

 private:
  double x_;
  double y_;
};

}  // namespace orvantis::filter::detection
