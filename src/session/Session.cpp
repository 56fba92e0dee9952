#include "session/Session.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "session/SensorZones.h"

namespace orvantis::toolkit {
namespace {

using filter::monitor::Crossing;

filter::monitor::LineCounterOptions lineOptions(const SessionOptions& options) {
  filter::monitor::LineCounterOptions lines = options.lines;
  lines.forgetAfter = options.forgetAfter;
  return lines;
}

using Lines = std::map<std::string, filter::detection::CounterLine>;

bool sameLines(const Lines& a, const Lines& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const auto& p, const auto& q) {
    const auto& first = p.second.getPoints();
    const auto& second = q.second.getPoints();
    return p.first == q.first &&
           std::equal(first.begin(), first.end(), second.begin(), second.end(),
                      [](const auto& v, const auto& w) { return v.x() == w.x() && v.y() == w.y(); });
  });
}

}  // namespace

std::vector<Crossing> crossingsOf(const SessionFrame& frame) {
  std::vector<Crossing> crossings;
  for (const Event& event : frame.events) {
    if (const auto* crossing = std::get_if<Crossing>(&event)) {
      crossings.push_back(*crossing);
    }
  }
  return crossings;
}

Session::Session(const Configuration& configuration, const SessionOptions& options)
    : zones_(configuration.detector),
      sensorZones_(options.followsSensorZones ? monitorOfSensorZones(configuration) : std::nullopt),
      objects_(configuration.detector, options.forgetAfter),
      lines_(configuration.lines, lineOptions(options)),
      lineOptions_(lineOptions(options)),
      counterLines_(configuration.lines) {
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
  if (objects != nullptr) {
    frame.objectCount = objects->size();
    frame.events.insert(frame.events.end(), frame.objects->events.begin(), frame.objects->events.end());
    frame.events.insert(frame.events.end(), crossings.begin(), crossings.end());
  }
  return frame;
}

std::vector<Event> Session::reconfigure(const Configuration& configuration) {
  Session next = *this;
  std::vector<Event> events;
  const auto append = [&events](const auto& lost) { events.insert(events.end(), lost.begin(), lost.end()); };
  append(next.zones_.reconfigure(configuration.detector));
  if (sensorZones_) {
    const SessionOptions options{lineOptions_, lineOptions_.forgetAfter, std::nullopt, true};
    Session fresh(configuration, options);
    next.sensorZones_ = std::move(fresh.sensorZones_);
    next.sensorZoneNames_ = std::move(fresh.sensorZoneNames_);
  }
  append(next.objects_.reconfigure(configuration.detector));
  if (!sameLines(counterLines_, configuration.lines)) {
    next.lines_ = filter::monitor::LineCounter(configuration.lines, lineOptions_);
    next.counterLines_ = configuration.lines;
  }
  *this = std::move(next);
  return events;
}

std::vector<filter::monitor::ZoneExplanation> Session::explainZones(const Points& points) const {
  return std::visit([this](const auto& view) { return zones_.explain(view); }, points);
}

}  // namespace orvantis::toolkit
