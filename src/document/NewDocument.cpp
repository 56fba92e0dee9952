#include "document/NewDocument.h"

#include <algorithm>
#include <cmath>

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>

#include "text/PrettyJson.h"

namespace orvantis::toolkit {
namespace {

using boost::json::array;
using boost::json::object;
using filter::detection::Point;

// Rounded to the centimetre, unless the number is too large for that.
double rounded(double value) {
  return std::abs(value) < 1e9 ? std::round(value * 100.0) / 100.0 + 0.0 : value;
}

// Half of the zone's side: a quarter of the extent, but at least half a metre, and large enough that its
// corners differ.
double halfSide(double low, double high) {
  return std::max({(high - low) / 8.0, 0.5, std::max(std::abs(low), std::abs(high)) * 1e-9});
}

object point(double x, double y) {
  return {{"x", rounded(x)}, {"y", rounded(y)}};
}

}  // namespace

std::string newDocument(const Site& site) {
  const Point centre((site.low.x() + site.high.x()) / 2.0, (site.low.y() + site.high.y()) / 2.0);
  const double width = halfSide(site.low.x(), site.high.x());
  const double depth = halfSide(site.low.y(), site.high.y());
  const auto corner = [&](double right, double up) {
    return point(centre.x() + right * width, centre.y() + up * depth);
  };
  const object zone{{"name", "Move this zone"},
                    {"index", 0},
                    {"shape", "polygon"},
                    {"Polygon", {{"Point", {corner(-1, -1), corner(-1, 1), corner(1, 1), corner(1, -1)}}}},
                    {"zMin", rounded(site.ground + 0.2)},
                    {"zMax", rounded(site.ground + 2.2)}};
  const object field{{"name", "Rename this field"}, {"index", 0}, {"Zone", array{zone}}};
  const object line{{"name", "Move this line"}, {"first", corner(-1, 0)}, {"second", corner(1, 0)}};
  return toPrettyJson(object{{"$schema", "zone-detector.schema.json"},
                             {"ZoneDetector",
                              {{"version", "1.1"},
                               {"debounceTimeMs", 200},
                               {"sensitivity", 6},
                               {"triggerActiveLevel", "high"},
                               {"useSoftwareAPICommand", false},
                               {"EvaluationField", array{field}},
                               {"ExclusionZone", array{}}}},
                             {"CounterLines", {{"CounterLine", array{line}}}}});
}

}  // namespace orvantis::toolkit
