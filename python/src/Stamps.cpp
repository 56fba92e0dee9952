#include "Stamps.h"

#include <string>

#include "Helper.h"
#include "text/Number.h"
#include "text/StampText.h"

namespace orvantis::python {

using filter::monitor::Stamp;

Stamp stampOf(const py::handle& stamp) {
  if (!PyFloat_Check(stamp.ptr())) {
    return Stamp(helper("orvantis_zones._stamps", "nanoseconds")(stamp).cast<std::int64_t>());
  }
  const std::string text = toolkit::toText(stamp.cast<double>());
  Stamp value{0};
  const auto [end, error] = toolkit::readSeconds(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) {
    throw py::value_error("stamp is " + text + " s; it must be above -4.6e9 and below 4.6e9");
  }
  return value;
}

}  // namespace orvantis::python
