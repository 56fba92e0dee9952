#include "session/Session.h"

#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include <pybind11/stl.h>

#include "Arrays.h"
#include "Content.h"
#include "Counts.h"
#include "Events.h"
#include "Helper.h"
#include "Log.h"
#include "Objects.h"
#include "SessionArguments.h"
#include "Site.h"
#include "Stamps.h"
#include "Text.h"
#include "document/FieldZones.h"
#include "session/EventText.h"
#include "session/ExplanationRecords.h"
#include "session/SessionTables.h"
#include "text/StampText.h"

namespace orvantis::python {

using filter::monitor::PointFrame;
using filter::monitor::Stamp;
using toolkit::SessionFrame;

toolkit::SessionOptions optionsOf(const py::object& forgetAfter, double clearance, double maxSpeed) {
  toolkit::SessionOptions options;
  options.forgetAfter = stampOf(forgetAfter);
  options.lines.clearance = clearance;
  options.lines.maxSpeed = maxSpeed;
  return options;
}

namespace {

// A session that several threads may call: one after the other. Called with the interpreter's lock, which is
// released before the mutex is taken and until it is free again: no thread waits for one with the other in
// hand.
class SharedSession {
 public:
  SharedSession(const toolkit::Configuration& configuration, const toolkit::SessionOptions& options)
      : session_(configuration, options) {}
  SharedSession(const SharedSession& other) : SharedSession(other, Held(other.mutex_)) {}

  SessionFrame take(Stamp stamp, const std::optional<toolkit::Points>& points,
                    const std::optional<std::vector<filter::monitor::TrackedObject>>& objects) {
    const Held held(mutex_);
    // The monitors would refuse it too, but not before some of them have taken it.
    if (last_ && stamp <= *last_) {
      throw std::invalid_argument("stamp " + toolkit::toText(stamp) + " s is not later than the last one, " +
                                  toolkit::toText(*last_) + " s");
    }
    SessionFrame frame = session_.take(stamp, points, objects ? &*objects : nullptr);
    last_ = stamp;
    return frame;
  }

  template <typename Use>
  auto with(const Use& use) {
    const Held held(mutex_);
    return use(session_);
  }
  Stamp last() {
    const Held held(mutex_);
    return last_.value_or(Stamp(0));
  }

 private:
  struct Held {
    explicit Held(std::mutex& mutex) : lock(mutex) {}
    Unlocked released;
    std::lock_guard<std::mutex> lock;
  };

  SharedSession(const SharedSession& other, const Held&) : session_(other.session_), last_(other.last_) {}

  mutable std::mutex mutex_;
  toolkit::Session session_;
  std::optional<Stamp> last_;
};

py::object occupiedOf(const PointFrame& frame) {
  return py::array_t<bool>({8, 3}, frame.isOccupied.data());
}

py::object outputsOf(const PointFrame& frame) {
  const auto level = [](PointFrame::Level value) { return value == PointFrame::Level::LOW ? "low" : "high"; };
  return py::make_tuple(level(frame.outputs[0]), level(frame.outputs[1]), level(frame.outputs[2]));
}

py::object frameOf(const SessionFrame& frame) {
  py::object counts = py::none();
  py::object occupied = py::none();
  py::object outputs = py::none();
  if (frame.points) {
    filter::classify::ZoneCounts found;
    found.inside = frame.points->counts;
    found.excluded = frame.points->excluded;
    found.noReturns = frame.points->noReturns;
    counts = countsOf(found, frame.pointCount);
    occupied = occupiedOf(*frame.points);
    outputs = outputsOf(*frame.points);
  }
  py::object zones = py::none();
  if (frame.objects) {
    zones = py::array_t<std::uint32_t>(static_cast<py::ssize_t>(frame.objects->zones.size()),
                                       frame.objects->zones.data());
  }
  py::list events;
  for (const toolkit::Event& event : frame.events) {
    events.append(eventOf(frame.stamp, event));
  }
  return helper("orvantis_zones._session", "Frame")(frame.stamp.count(), counts, occupied, outputs, zones,
                                                    py::tuple(events));
}

py::object take(SharedSession& session, const py::object& given, const py::object& points,
                const py::object& objects) {
  const Stamp stamp = stampOf(given);
  std::optional<GivenPoints> cloud;
  std::optional<toolkit::Points> view;
  if (!points.is_none()) {
    cloud = pointsOf(points);
    view = cloud->view;
  }
  std::optional<std::vector<filter::monitor::TrackedObject>> seen;
  if (!objects.is_none()) {
    seen = objectsOf(objects);
  }
  return frameOf(session.take(stamp, view, seen));
}

py::tuple reconfigure(SharedSession& session, const Site& site) {
  const toolkit::Configuration snapshot = snapshotOf(*site.configuration);
  const auto lost = session.with([&](toolkit::Session& of) { return of.reconfigure(snapshot); });
  const Stamp stamp = session.last();
  py::list events;
  for (const toolkit::Event& event : lost) {
    events.append(eventOf(stamp, event));
  }
  return events;
}

py::list explain(SharedSession& session, const py::object& given) {
  const GivenPoints points = pointsOf(given);
  const auto found = session.with([&](toolkit::Session& of) { return of.explainZones(points.view); });
  py::list explanations;
  for (const auto& zone : found) {
    py::dict takenBy;
    for (const auto& share : zone.takenBy) {
      takenBy[textOf(share.zoneName)] = share.points;
    }
    const auto count = [](const auto& time) {
      return time ? py::object(py::int_(time->count())) : py::none();
    };
    explanations.append(helper("orvantis_zones._session", "ZoneExplanation")(
        zone.slot.field, zone.slot.zone, textOf(zone.slot.zoneName), zone.counted, zone.minPoints, zone.taken,
        takenBy, zone.isOccupiedNow, zone.isOccupied, count(zone.differsSince), count(zone.missing)));
  }
  return explanations;
}

py::object explainCrossing(SharedSession& session, const std::string& line, std::int32_t track) {
  const auto found = session.with([&](toolkit::Session& of) { return of.lines().explain(line, track); });
  if (found.verdict == filter::monitor::CrossingVerdict::NoSuchLine) {
    throw py::key_error(toolkit::toUtf8(line));
  }
  const py::object side = found.side ? py::object(py::str(toolkit::sideName(*found.side))) : py::none();
  const py::object last =
      found.lastCrossing ? eventOf(found.lastCrossing->accepted, *found.lastCrossing) : py::none();
  return helper("orvantis_zones._session", "CrossingExplanation")(
      toolkit::verdictName(found.verdict), filter::monitor::describe(found.verdict), side, last);
}

py::list occupants(SharedSession& session, int field, int zone) {
  const auto found = session.with([&](toolkit::Session& of) { return of.objects().occupants(field, zone); });
  py::list list;
  for (const auto& occupant : found) {
    list.append(py::make_tuple(occupant.id, textOf(occupant.className), toolkit::toSeconds(occupant.entered),
                               toolkit::toSeconds(occupant.lastSeen)));
  }
  return list;
}

}  // namespace

void bindSession(py::module_& module) {
  py::class_<SharedSession>(module, "Session")
      .def(py::init([](const Site& site, const py::object& forgetAfter, double clearance, double maxSpeed) {
             const toolkit::Configuration snapshot = snapshotOf(*site.configuration);
             const toolkit::SessionOptions options = optionsOf(forgetAfter, clearance, maxSpeed);
             const Unlocked released;
             return std::make_unique<SharedSession>(snapshot, options);
           }),
           Logged())
      .def(py::init<const SharedSession&>())
      .def("_take", &take, Logged())
      .def("_reconfigure", &reconfigure, Logged())
      .def("_explain", &explain, Logged())
      .def("_explain_crossing", &explainCrossing, Logged())
      .def("_occupants", &occupants, Logged())
      .def("_lines_csv",
           [](SharedSession& self) {
             return py::bytes(
                 self.with([](toolkit::Session& of) { return toolkit::SessionTables({}).lineTable(of); }));
           })
      .def_property(
          "_active_field",
          [](SharedSession& self) {
            return self.with([](toolkit::Session& of) { return of.activeField(); });
          },
          [](SharedSession& self, int field) {
            self.with([&](toolkit::Session& of) { of.setActiveField(field); });
          });
  module.def("stamp_of", [](double stamp) { return stampOf(py::float_(stamp)).count(); });
}

}  // namespace orvantis::python
