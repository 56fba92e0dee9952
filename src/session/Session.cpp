#include "session/Session.h"

#include <chrono>

#include "session/SensorZones.h"

namespace orvantis::toolkit {
namespace {

using filter::monitor::Crossing;

filter::monitor::LineCounterOptions lineOptions(const SessionOptions& options) {
  filter::monitor::LineCounterOptions lines = options.lines;
  lines.forgetAfter = options.forgetAfter;
  return lines;
}

}  // namespace

Session::Session(const Configuration& configuration, const SessionOptions& options)
    : zones_(configuration.detector),
      sensorZones_(options.followsSensorZones ? monitorOfSensorZones(configuration) : std::nullopt),
      objects_(configuration.detector, options.forgetAfter),
      lines_(configuration.lines, lineOptions(options)) {
  if (sensorZones_) {
    for (const auto& zone : configuration.sensorZones) {
      sensorZoneNames_.push_back(zone->getName());
    }
  }
  if (options.activeField) {
    zones_.setActiveField(*options.activeField);
  }
}

SessionFrame Session::take(filter::monitor::Stamp stamp, const std::optional<Points>& points,
                           const std::vector<filter::monitor::TrackedObject>* objects,
                           const std::vector<filter::monitor::SensorPoints>& sensors) {
  const auto update = [&](SessionFrame& frame) {
    if (points) {
      frame.points = std::visit([&](const auto& view) { return zones_.update(stamp, view); }, *points);
    }
    if (sensorZones_ && !sensors.empty()) {
      frame.sensorZones = sensorZones_->update(stamp, sensors);
    }
  };
  return takeWith(stamp, update, points ? sizeOf(*points) : 0, objects);
}

SessionFrame Session::take(filter::monitor::Stamp stamp, const CountedPoints& points,
                           const std::vector<filter::monitor::TrackedObject>* objects) {
  const auto update = [&](SessionFrame& frame) { frame.points = zones_.update(stamp, points.counts); };
  return takeWith(stamp, update, points.pointCount, objects);
}

template <typename Update>
SessionFrame Session::takeWith(filter::monitor::Stamp stamp, Update update, std::size_t pointCount,
                               const std::vector<filter::monitor::TrackedObject>* objects) {
  SessionFrame frame;
  frame.stamp = stamp;
  std::vector<Crossing> crossings;
  const auto begin = std::chrono::steady_clock::now();
  update(frame);
  if (objects != nullptr) {
    frame.objects = objects_.update(stamp, *objects);
    crossings = lines_.update(stamp, *objects);
  } else {
    // Time passes: so a track that is out of sight is lost on time, and not only at the next frame of
    // objects.
    frame.lost = objects_.advance(stamp);
    lines_.advance(stamp);
  }
  frame.taken = std::chrono::steady_clock::now() - begin;

  if (frame.points) {
    frame.pointCount = pointCount;
    frame.events.insert(frame.events.end(), frame.points->events.begin(), frame.points->events.end());
    if (frame.sensorZones) {
      for (const filter::monitor::ZoneEvent& event : frame.sensorZones->events) {
        frame.events.emplace_back(SensorZoneEvent{event});
      }
    }
    const OutputEvent outputs{frame.points->activeField, frame.points->outputs};
    if (!lastOutputs_ || lastOutputs_->levels != outputs.levels) {
      frame.events.emplace_back(outputs);
    }
    lastOutputs_ = outputs;
  }
  frame.events.insert(frame.events.end(), frame.lost.begin(), frame.lost.end());
  if (frame.objects) {
    frame.objectCount = objects->size();
    frame.events.insert(frame.events.end(), frame.objects->events.begin(), frame.objects->events.end());
    frame.events.insert(frame.events.end(), crossings.begin(), crossings.end());
  }
  return frame;
}

std::vector<filter::monitor::ZoneExplanation> Session::explainZones(const Points& points) const {
  return std::visit([this](const auto& view) { return zones_.explain(view); }, points);
}

}  // namespace orvantis::toolkit
