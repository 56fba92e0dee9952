#include "Counts.h"

#include <cstdint>

#include <pybind11/numpy.h>

#include "Helper.h"

namespace orvantis::python {

py::object countsOf(const filter::classify::ZoneCounts& counts, std::size_t total) {
  const py::array_t<std::uint64_t> inside({8, 3}, counts.inside.data());
  return helper("orvantis_zones._results", "Counts")(inside, counts.excluded, counts.noReturns, total);
}

}  // namespace orvantis::python
