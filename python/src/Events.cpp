#include "Events.h"

#include <chrono>
#include <string>
#include <variant>
#include <vector>

#include "Helper.h"
#include "Text.h"
#include "session/EventText.h"

namespace orvantis::python {
namespace {

using toolkit::Record;

struct ToPython {
  py::object operator()(std::nullptr_t) const { return py::none(); }
  py::object operator()(bool value) const { return py::bool_(value); }
  py::object operator()(std::int64_t value) const { return py::int_(value); }
  py::object operator()(std::uint64_t value) const { return py::int_(value); }
  py::object operator()(double value) const { return py::float_(value); }
  py::object operator()(std::chrono::nanoseconds value) const { return py::int_(value.count()); }
  py::object operator()(const std::string& value) const { return textOf(value); }
  py::object operator()(const Record& value) const { return dictOf(value); }
  template <typename Entry>
  py::object operator()(const std::vector<Entry>& values) const {
    py::list list;
    for (const Entry& value : values) {
      list.append((*this)(value));
    }
    return list;
  }
};

}  // namespace

py::dict dictOf(const Record& record) {
  py::dict dict;
  for (const toolkit::Entry& entry : record) {
    if (!entry.key.empty()) {
      dict[py::str(entry.key)] = std::visit(ToPython(), entry.value);
    }
  }
  return dict;
}

py::object eventOf(filter::monitor::Stamp stamp, const toolkit::Event& event) {
  return helper("orvantis_zones._events", "event_of")(dictOf(toolkit::recordOf(stamp, event)),
                                                      textOf(toolkit::toLine(stamp, event)));
}

}  // namespace orvantis::python
