#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "Arrays.h"
#include "Console.h"
#include "Content.h"
#include "Frames.h"
#include "HeightWarning.h"
#include "Helper.h"
#include "InputWarnings.h"
#include "Log.h"
#include "Objects.h"
#include "SessionArguments.h"
#include "Site.h"
#include "Stamps.h"
#include "Text.h"
#include "document/FieldZones.h"
#include "session/HeightWatch.h"
#include "session/Session.h"
#include "session/SessionPlot.h"
#include "session/SessionSummary.h"
#include "session/SessionTables.h"

namespace orvantis::python {
namespace {

using filter::monitor::Stamp;
using Objects = std::vector<filter::monitor::TrackedObject>;

// A whole recording through a new session, and what is written of it. Used by one thread, without the
// interpreter's lock.
class Evaluation {
 public:
  Evaluation(toolkit::Configuration configuration, const toolkit::SessionOptions& options)
      : configuration_(std::move(configuration)),
        zones_(toolkit::zonesOf(configuration_.detector)),
        session_(configuration_, options),
        tables_(zones_),
        plot_(configuration_, {true, true}, options.forgetAfter),
        heights_(zones_),
        events_(tables_.eventHeader()) {
    tables_.leaveOutTimings();
    frames_ = tables_.frameHeader();
  }

  void add(Stamp stamp, const std::optional<toolkit::Points>& points, const Objects* objects,
           const std::string& file) {
    if (points) {
      heights_.add(*points);
    }
    const toolkit::SessionFrame frame = session_.take(stamp, points, objects);
    summary_.add(frame);
    events_ += tables_.eventRows(frame);
    frames_ += tables_.frameRow(frame, file);
    plot_.add(frame, objects);
  }

  // The next so many moments; fewer only at the end. @return how many there were
  std::size_t feed(Frames& frames, std::size_t most) {
    for (std::size_t i = 0; i < most; ++i) {
      const auto moment = frames.next();
      if (!moment) {
        tellInput(frames);
        return i;
      }
      std::optional<toolkit::Points> points;
      if (moment->frame) {
        points = moment->frame->points;
        inputWarnings_.add(*moment->frame);
      }
      add(moment->stamp, points, moment->objectsOrNull(), moment->frame ? moment->frame->file : "");
    }
    return most;
  }

  py::dict finish(const toolkit::SessionInputs& inputs, const std::string& title) {
    if (inputs.points) {
      warn([this](const app::Console& console) { warnOfHeights(heights_, console); });
    }
    plot_.setInputs(inputs);
    py::dict parts;
    parts["events"] = py::bytes(events_);
    parts["frames"] = py::bytes(frames_);
    parts["zones"] = py::bytes(tables_.zoneTable(summary_, session_, inputs));
    parts["lines"] = py::bytes(tables_.lineTable(session_));
    parts["warnings"] = textOf(warnings_);
    try {
      parts["svg"] = textOf(plot_.draw(title));
    } catch (const std::exception& error) {
      parts["svg"] = py::none();
      parts["undrawn"] = textOf(error.what());
    }
    return parts;
  }

 private:
  template <typename Tell>
  void warn(const Tell& tell) {
    std::ostringstream out;
    std::ostringstream warnings;
    tell(app::Console{out, warnings});
    warnings_ += warnings.str();
  }

  void tellInput(const Frames& frames) {
    warn([&](const app::Console& console) {
      inputWarnings_.tell(frames.timeLine().input(), console);
      if (frames.timeLine().numLate() > 0) {
        console.warn(toolkit::counted(frames.timeLine().numLate(), "frame") +
                     " left out: not later than the frame before");
      }
    });
  }

  toolkit::Configuration configuration_;
  std::vector<toolkit::FieldZone> zones_;
  toolkit::Session session_;
  toolkit::SessionSummary summary_;
  toolkit::SessionTables tables_;
  toolkit::SessionPlot plot_;
  toolkit::HeightWatch heights_;
  app::InputWarnings inputWarnings_;
  std::string events_;
  std::string frames_;
  std::string warnings_;
};

void take(Evaluation& evaluation, const py::object& given, const py::object& points,
          const py::object& objects) {
  const Stamp stamp = stampOf(given);
  std::optional<GivenPoints> cloud;
  std::optional<toolkit::Points> view;
  if (!points.is_none()) {
    cloud = pointsOf(points);
    view = cloud->view;
  }
  std::optional<Objects> seen;
  if (!objects.is_none()) {
    seen = objectsOf(objects);
  }
  const py::gil_scoped_release released;
  evaluation.add(stamp, view, seen ? &*seen : nullptr, "");
}

}  // namespace

void bindEvaluation(py::module_& module) {
  py::class_<Evaluation>(module, "Evaluation")
      .def(py::init([](const Site& site, const py::object& forgetAfter, double clearance, double maxSpeed) {
             return std::make_unique<Evaluation>(snapshotOf(*site.configuration),
                                                 optionsOf(forgetAfter, clearance, maxSpeed));
           }),
           Logged())
      .def("take", &take, Logged())
      .def("feed", &Evaluation::feed, Released())
      .def(
          "finish",
          [](Evaluation& self, bool points, bool objects, const std::string& title) {
            return self.finish({points, objects}, title);
          },
          Logged());
}

}  // namespace orvantis::python
