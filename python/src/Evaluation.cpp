#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Arrays.h"
#include "Content.h"
#include "Frames.h"
#include "Helper.h"
#include "Log.h"
#include "Objects.h"
#include "SessionArguments.h"
#include "Site.h"
#include "Stamps.h"
#include "Text.h"
#include "document/FieldZones.h"
#include "recording/FrameWarnings.h"
#include "session/HeightWarnings.h"
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
  /// @param isDrawn whether there will be a picture, for which memory grows with the sightings
  Evaluation(toolkit::Configuration configuration, const toolkit::SessionOptions& options, bool isDrawn)
      : configuration_(std::move(configuration)),
        zones_(toolkit::zonesOf(configuration_.detector)),
        session_(configuration_, options),
        tables_(zones_, session_.sensorZoneNames().size()),
        heights_(zones_),
        events_(tables_.eventHeader()) {
    if (isDrawn) {
      plot_.emplace(configuration_, toolkit::SessionInputs{true, true}, options.forgetAfter);
    }
    tables_.leaveOutTimings();
    frames_ = tables_.frameHeader();
  }

  void add(Stamp stamp, const std::optional<toolkit::Points>& points, const Objects* objects,
           const std::string& file = "", const std::vector<filter::monitor::SensorPoints>& sensors = {}) {
    if (points) {
      heights_.add(*points);
    }
    const toolkit::SessionFrame frame = session_.take(stamp, points, objects, sensors);
    summary_.add(frame);
    events_ += tables_.eventRows(frame);
    frames_ += tables_.frameRow(frame, file);
    if (plot_) {
      plot_->add(frame, objects);
    }
  }

  // The next so many moments; fewer only at the end. @return how many there were
  std::size_t feed(Frames& frames, std::size_t most) {
    for (std::size_t i = 0; i < most; ++i) {
      const auto moment = frames.next();
      if (!moment) {
        tellInput(frames);
        return i;
      }
      if (moment->frame) {
        frameWarnings_.add(*moment->frame);
        add(moment->stamp, moment->frame->points, moment->objectsOrNull(), moment->frame->file,
            pointsBySensor(*moment->frame));
      } else {
        add(moment->stamp, std::nullopt, moment->objectsOrNull());
      }
    }
    return most;
  }

  // What the run comes to; the picture is empty where there is none or it cannot be drawn.
  struct Parts {
    std::string events;
    std::string frames;
    std::string zones;
    std::string lines;
    std::string warnings;
    std::string svg;
    std::string undrawn;  ///< why not
  };

  Parts finish(const toolkit::SessionInputs& inputs, const std::string& title) {
    if (inputs.points) {
      warn(toolkit::warningsOf(heights_));
    }
    Parts parts{events_,
                frames_,
                tables_.zoneTable(summary_, session_, inputs),
                tables_.lineTable(session_),
                warnings_,
                {},
                {}};
    if (plot_) {
      draw(inputs, title, parts);
    }
    return parts;
  }

 private:
  void draw(const toolkit::SessionInputs& inputs, const std::string& title, Parts& parts) {
    plot_->setInputs(inputs);
    try {
      parts.svg = plot_->draw(title);
    } catch (const std::exception& error) {
      parts.undrawn = error.what();
    }
  }

  void warn(const std::vector<std::string>& texts) {
    for (const std::string& text : texts) {
      warnings_ += text + "\n";
    }
  }

  void tellInput(const Frames& frames) {
    warnings_ += frames.warnings();
    warn(frameWarnings_.texts(frames.timeLine()));
  }

  toolkit::Configuration configuration_;
  std::vector<toolkit::FieldZone> zones_;
  toolkit::Session session_;
  toolkit::SessionSummary summary_;
  toolkit::SessionTables tables_;
  std::optional<toolkit::SessionPlot> plot_;
  toolkit::HeightWatch heights_;
  toolkit::FrameWarnings frameWarnings_;
  std::string events_;
  std::string frames_;
  std::string warnings_;
};

py::dict dictOf(const Evaluation::Parts& parts) {
  py::dict dict;
  dict["events"] = py::bytes(parts.events);
  dict["frames"] = py::bytes(parts.frames);
  dict["zones"] = py::bytes(parts.zones);
  dict["lines"] = py::bytes(parts.lines);
  dict["warnings"] = textOf(parts.warnings);
  dict["svg"] = parts.svg.empty() ? py::object(py::none()) : textOf(parts.svg);
  dict["undrawn"] = textOf(parts.undrawn);
  return dict;
}

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
  const Unlocked released;
  evaluation.add(stamp, view, seen ? &*seen : nullptr);
}

}  // namespace

void bindEvaluation(py::module_& module) {
  py::class_<Evaluation>(module, "Evaluation")
      .def(py::init([](const Site& site, const py::object& forgetAfter, double clearance, double maxSpeed,
                       bool followsSensorZones, bool isDrawn) {
             toolkit::SessionOptions options = optionsOf(forgetAfter, clearance, maxSpeed);
             options.followsSensorZones = followsSensorZones;
             toolkit::Configuration snapshot = snapshotOf(*site.configuration);
             const Unlocked released;
             return std::make_unique<Evaluation>(std::move(snapshot), options, isDrawn);
           }),
           Logged())
      .def("take", &take, Logged())
      .def("feed", &Evaluation::feed, Released())
      .def(
          "finish",
          [](Evaluation& self, bool points, bool objects, const std::string& title) {
            Evaluation::Parts parts;
            {
              const Unlocked released;
              parts = self.finish({points, objects}, title);
            }
            return dictOf(parts);
          },
          Logged());
}

}  // namespace orvantis::python
