#include <boost/lexical_cast.hpp>
#include <boost/uuid/uuid.hpp>
#include <boost/uuid/uuid_io.hpp>

#include <filter/detection/Zone3dBase.h>

#include "document/checks/Topics.h"
#include "document/checks/Values.h"
#include "text/Number.h"

namespace orvantis::toolkit {
namespace {

using filter::detection::Zone3dBase;

// A height, or its default when it is not given; nothing when it is given but not a number.
std::optional<double> heightOf(const CheckedObject& zone, std::string_view key, double byDefault) {
  return zone.node.find(key) == nullptr ? byDefault : numberUnder(zone.node, key);
}

void checkHeights(const CheckedObject& zone, Report& report) {
  const auto zMin = heightOf(zone, "zMin", Zone3dBase::DEFAULT_Z_MIN);
  const auto zMax = heightOf(zone, "zMax", Zone3dBase::DEFAULT_Z_MAX);
  if (!zMin || !zMax || *zMin <= *zMax) {
    return;
  }
  const std::string_view given = zone.node.find("zMin") != nullptr ? "zMin" : "zMax";
  const auto text = [&zone](std::string_view key, double height) {
    return std::string(key) + " " + toText(height) + (zone.node.find(key) == nullptr ? " (the default)" : "");
  };
  report.add(FindingKind::EmptyHeights, zone.node.find(given)->value, pathOf(zone, given),
             text("zMin", *zMin) + " is above " + text("zMax", *zMax) + "; the zone contains nothing");
}

void checkId(const CheckedObject& zone, Report& report) {
  const LocatedNode* id = zone.node.find("id");
  if (id == nullptr || id->kind != LocatedNode::Kind::Text) {
    return;
  }
  boost::uuids::uuid uuid{};
  if (!boost::conversion::try_lexical_convert(id->text, uuid)) {
    report.add(FindingKind::InvalidId, id->value, pathOf(zone, "id"),
               quoted(id->text) +
                   " is not a UUID; write 36 characters such as 00000000-0000-0000-0000-000000000000, "
                   "which asks for a fresh one");
  }
}

}  // namespace

void checkZone(const CheckedObject& zone, Report& report) {
  checkHeights(zone, report);
  if (zone.kind == ObjectKind::SensorZone) {
    checkId(zone, report);
  }
}

}  // namespace orvantis::toolkit
