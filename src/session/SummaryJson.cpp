#include "session/SummaryJson.h"

#include <utility>

#include <boost/json/array.hpp>

#include "text/StampText.h"

namespace orvantis::toolkit {
namespace {

using boost::json::array;
using boost::json::object;
using boost::json::value;
using filter::monitor::CrossingCounts;
using filter::monitor::Duration;
using filter::monitor::LineTally;

value valueOf(const std::optional<Duration>& time) {
  return time ? value(toSeconds(*time)) : value(nullptr);
}

object describe(const FieldZone& zone, const ZoneSummary& summary, const SessionInputs& inputs) {
  object result{{"type", "zoneSummary"},
                {"field", zone.field},
                {"fieldName", zone.fieldName},
                {"zone", zone.zone},
                {"name", zone.name()}};
  if (inputs.points) {
    result["occupied"] = toSeconds(summary.occupied);
    result["activations"] = summary.activations;
    result["peakPoints"] = summary.peakPoints;
  }
  if (inputs.objects) {
    result["peakObjects"] = summary.peakObjects;
    result["visits"] = summary.visits;
    result["medianDwell"] = valueOf(summary.medianDwell);
    result["longestDwell"] = valueOf(summary.longestDwell);
  }
  return result;
}

void append(object& target, const CrossingCounts& counts) {
  target["toLeft"] = counts.toLeft;
  target["toRight"] = counts.toRight;
  target["netToLeft"] = netToLeft(counts);
}

object describe(const LineTally& tally) {
  object result{{"type", "lineSummary"}, {"line", tally.line}};
  append(result, tally.crossings);
  array classes;
  for (const auto& [name, counts] : tally.byClass) {
    object entry{{"class", name}};
    append(entry, counts);
    classes.push_back(std::move(entry));
  }
  result["classes"] = std::move(classes);
  return result;
}

}  // namespace

std::vector<object> toObjects(const SessionSummary& summary, const Session& session,
                              const std::vector<FieldZone>& zones, const SessionInputs& inputs) {
  std::vector<object> objects;
  for (const FieldZone& zone : zones) {
    objects.push_back(describe(zone, summary.of(zone, session.objects()), inputs));
  }
  if (inputs.objects) {
    for (const LineTally& tally : session.lines().tallies()) {
      objects.push_back(describe(tally));
    }
  }
  objects.push_back({{"type", "summary"},
                     {"pointFrames", summary.pointFrames()},
                     {"objectFrames", summary.objectFrames()},
                     {"begin", valueOf(summary.begin())},
                     {"end", valueOf(summary.end())}});
  return objects;
}

}  // namespace orvantis::toolkit
