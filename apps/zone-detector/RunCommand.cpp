#include "RunCommand.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <utility>

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>

#include "Configuration.h"
#include "Console.h"
#include "JsonText.h"
#include "Progress.h"
#include "Table.h"
#include "Text.h"
#include "ZoneCounter.h"

namespace orvantis::app {
namespace {

using filter::classify::PointClassifier;
using filter::classify::ZoneCounts;
using filter::detection::Zone3dBase;
using filter::detection::ZoneDetector;

// A zone of an evaluation field, with its names and its place among the counts.
struct FieldZone {
  int field;
  int zone;
  std::string fieldName;
  std::shared_ptr<const Zone3dBase> volume;
  bool heightSeen = false;  // whether any point so far was between its heights

  std::string name() const { return volume->getName(); }
  std::uint64_t count(const ZoneCounts& counts) const {
    return counts.inside[static_cast<std::size_t>(PointClassifier::zoneBit(field, zone))];
  }
};

std::vector<FieldZone> zonesOf(const ZoneDetector& detector) {
  std::vector<FieldZone> zones;
  for (int f = 0; f < ZoneDetector::NUM_EVAL_FIELDS; ++f) {
    for (int z = 0; z < ZoneDetector::NUM_ZONES_PER_EVAL_FIELD; ++z) {
      if (const auto volume = detector.getZone(f, z)) {
        zones.push_back({f, z, detector.getEvaluationField(f)->name, volume});
      }
    }
  }
  return zones;
}

filter::classify::PointsView<double> pointsOf(const Cloud& cloud) {
  return filter::classify::PointsView<double>::interleaved(cloud.data(), sizeof(Cloud::value_type),
                                                           cloud.size());
}

struct Frame {
  std::size_t number;
  std::string file;
  std::uint64_t points;
  ZoneCounts counts;
};

void printTable(const Frame& frame, const std::vector<FieldZone>& zones, std::uint64_t minPoints,
                const Console& console) {
  console.out << (frame.number == 0 ? "" : "\n")
              << console.bold(printable(frame.file) + ": " + counted(frame.points, "point") + ", " +
                              counted(frame.counts.notFinite, "no return") + ", " +
                              std::to_string(frame.counts.excluded) + " in exclusion zones")
              << '\n';
  Table table({"FIELD", "ZONE", ">POINTS", "≥ " + std::to_string(minPoints)});
  int lastField = -1;
  for (const FieldZone& zone : zones) {
    const std::uint64_t count = zone.count(frame.counts);
    table.addRow({zone.field != lastField ? std::to_string(zone.field) + " " + zone.fieldName : "",
                  std::to_string(zone.zone) + " " + zone.name(), std::to_string(count),
                  count >= minPoints ? "yes" : "no"});
    lastField = zone.field;
  }
  table.print(console);
}

void printJson(const Frame& frame, const std::vector<FieldZone>& zones, std::uint64_t minPoints,
               const Console& console) {
  boost::json::array list;
  for (const FieldZone& zone : zones) {
    const std::uint64_t count = zone.count(frame.counts);
    list.push_back(boost::json::object{{"field", zone.field},
                                       {"fieldName", zone.fieldName},
                                       {"zone", zone.zone},
                                       {"name", zone.name()},
                                       {"points", count},
                                       {"reached", count >= minPoints}});
  }
  console.out << toJson(boost::json::object{{"frame", frame.number},
                                            {"file", frame.file},
                                            {"points", frame.points},
                                            {"noReturns", frame.counts.notFinite},
                                            {"excluded", frame.counts.excluded},
                                            {"minPoints", minPoints},
                                            {"zones", std::move(list)}})
              << '\n';
}

void noteHeights(std::vector<FieldZone>& zones, const Cloud& cloud) {
  for (FieldZone& zone : zones) {
    if (!zone.heightSeen) {
      zone.heightSeen = std::ranges::any_of(cloud, [&zone](const Eigen::Vector3d& point) {
        return point.allFinite() && point.z() >= zone.volume->getZMin() &&
               point.z() <= zone.volume->getZMax();
      });
    }
  }
}

// Points in one frame of reference and zones in another look like an empty scene; say so.
void warnOfHeights(const std::vector<FieldZone>& zones, const Console& console) {
  for (const FieldZone& zone : zones) {
    if (!zone.heightSeen) {
      console.warn("no point of any frame is between the heights of zone \"" + printable(zone.name()) +
                   "\" (field " + std::to_string(zone.field) + "), " + toText(zone.volume->getZMin()) +
                   " to " + toText(zone.volume->getZMax()) + "; are its heights in the frame of the points?");
    }
  }
}

}  // namespace

int run(const RunOptions& options, const Console& console) {
  const Configuration configuration = loadConfiguration(options.document);
  const ZoneDetector& detector = configuration.detector;
  const auto minPoints = static_cast<std::uint64_t>(detector.getMinPoints());
  const PointClassifier classifier(detector);
  std::vector<FieldZone> zones = zonesOf(detector);
  Progress progress(console, options.clouds.size());
  for (std::size_t i = 0; i < options.clouds.size(); ++i) {
    progress.show(i, options.clouds[i]);
    const Cloud cloud = readCloud(options.clouds[i]);
    const ZoneCounts counts =
        options.reference ? countZoneByZone(detector, cloud) : classifier.count(pointsOf(cloud));
    const Frame frame{i, options.clouds[i], cloud.size(), counts};
    noteHeights(zones, cloud);
    progress.erase();
    (options.json ? printJson : printTable)(frame, zones, minPoints, console);
    console.flush();
  }
  warnOfHeights(zones, console);
  return 0;
}

}  // namespace orvantis::app
