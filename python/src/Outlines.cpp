#include "Outlines.h"

#include "Helper.h"

namespace orvantis::python {

core::PlanarPolygon outlineOf(const py::handle& footprint) {
  core::PlanarPolygon outline;
  for (const auto& p : ringOf(footprint, "footprint")) {
    outline.outer().emplace_back(p.x(), p.y());
  }
  return outline;
}

}  // namespace orvantis::python
