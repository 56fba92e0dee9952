#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include <filter/detection/CounterLine.h>
#include <filter/detection/Zone3dTarsel.h>
#include <filter/detection/ZoneDetector.h>

namespace orvantis::toolkit {

struct LocatedNode;

/// The content of a zone document.
struct Configuration {
  filter::detection::ZoneDetector detector;
  std::map<std::string, filter::detection::CounterLine> lines;
  std::vector<std::shared_ptr<filter::detection::Zone3dTarsel>>
      sensorZones;  ///< the zones that are bound to sensors, in order
};

/// Loads a checked document from its nodes, so that exactly what was checked is loaded.
/// @throws what the library's `load` operations throw
Configuration load(const LocatedNode& document);

}  // namespace orvantis::toolkit
