#pragma once

#include <filter/classify/PointClassifier.h>

namespace orvantis::filter::classify {

/// Three arrays with room for the coordinates of a view.
template <typename Real>
struct Columns {
  Real* x;
  Real* y;
  Real* z;
};

/// Copies the coordinates of all points. Runs on the best instructions that the processor has.
void copyColumns(const PointsView<float>& points, const Columns<float>& to);
void copyColumns(const PointsView<double>& points, const Columns<double>& to);

}  // namespace orvantis::filter::classify
