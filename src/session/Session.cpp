#include "session/Session.h"

#include <chrono>

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
      objects_(configuration.detector, options.forgetAfter),
      lines_(configuration.lines, lineOptions(options)) {
  if (options.activeField) {
    zones_.setActiveField(*options.activeField);
  }
}

SessionFrame Session::take(filter::monitor::Stamp stamp, const std::optional<Points>& points,
                           const std::vector<filter::monitor::TrackedObject>* objects) {
  SessionFrame frame;
  frame.stamp = stamp;
  std::vector<Crossing> crossings;
  const auto begin = std::chrono::steady_clock::now();
  if (points) {
    frame.points = std::visit([&](const auto& view) { return zones_.update(stamp, view); }, *points);
  }
  if (objects != nullptr) {
    frame.objects = objects_.update(stamp, *objects);
    crossings = lines_.update(stamp, *objects);
  } else {
    // Who is out of sight while points go on is lost in time and not with the next sighting of somebody.
    frame.lost = objects_.advance(stamp);
    lines_.advance(stamp);
  }
  frame.taken = std::chrono::steady_clock::now() - begin;

  if (frame.points) {
    frame.pointCount = sizeOf(*points);
    frame.events.insert(frame.events.end(), frame.points->events.begin(), frame.points->events.end());
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
