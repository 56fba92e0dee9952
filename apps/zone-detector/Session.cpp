#include "Session.h"

#include <chrono>

namespace orvantis::app {
namespace {

using filter::monitor::Crossing;

filter::classify::PointsView<double> pointsOf(const Cloud& cloud) {
  return filter::classify::PointsView<double>::interleaved(cloud.data(), sizeof(Cloud::value_type),
                                                           cloud.size());
}

}  // namespace

Session::Session(const Configuration& configuration)
    : zones_(configuration.detector), objects_(configuration.detector), lines_(configuration.lines) {}

SessionFrame Session::take(const Moment& moment, const Cloud& cloud) {
  SessionFrame frame;
  frame.stamp = moment.stamp;
  std::vector<Crossing> crossings;
  const auto begin = std::chrono::steady_clock::now();
  if (moment.cloud) {
    frame.points = zones_.update(moment.stamp, pointsOf(cloud));
  }
  if (moment.objects) {
    frame.objects = objects_.update(moment.stamp, *moment.objects);
    crossings = lines_.update(moment.stamp, *moment.objects);
  }
  frame.taken = std::chrono::steady_clock::now() - begin;

  if (frame.points) {
    frame.cloud = *moment.cloud;
    frame.pointCount = cloud.size();
    frame.events.insert(frame.events.end(), frame.points->events.begin(), frame.points->events.end());
    const OutputEvent outputs{frame.points->activeField, frame.points->outputs};
    if (!lastOutputs_ || lastOutputs_->levels != outputs.levels) {
      frame.events.emplace_back(outputs);
    }
    lastOutputs_ = outputs;
  }
  if (frame.objects) {
    frame.objectCount = moment.objects->size();
    frame.events.insert(frame.events.end(), frame.objects->events.begin(), frame.objects->events.end());
    frame.events.insert(frame.events.end(), crossings.begin(), crossings.end());
  }
  return frame;
}

std::vector<filter::monitor::ZoneExplanation> Session::explainZones(const Cloud& cloud) const {
  return zones_.explain(pointsOf(cloud));
}

}  // namespace orvantis::app
