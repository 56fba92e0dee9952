#pragma once

#include <cstdint>

#include <pybind11/numpy.h>

#include <filter/classify/Points.h>

#include "Bindings.h"

namespace orvantis::python {

/// The points that a user gave, where they lie in memory.
struct GivenPoints {
  py::object owner;  ///< keeps the memory
  filter::classify::Points view;
  /// The view runs backwards through the points, whose rows have a negative stride.
  bool isReversed = false;
  const char* begin = nullptr;  ///< of the memory, the first byte
  const char* end = nullptr;    ///< and the one behind the last

  std::size_t size() const { return filter::classify::sizeOf(view); }
};

/// @throws py::error_already_set with what is allowed, for what is not points
GivenPoints pointsOf(const py::object& points);

/// An array to write one value for each point into: the given one, or a new one for None.
/// @throws py::error_already_set for an array that does not fit, py::value_error for one that overlaps points
template <typename T>
py::array_t<T> resultFor(const GivenPoints& points, const py::object& out);

}  // namespace orvantis::python
