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

/// What a zone document holds.
struct Configuration {
  filter::detection::ZoneDetector detector;
  std::map<std::string, filter::detection::CounterLine> lines;
  std::vector<std::shared_ptr<filter::detection::Zone3dTarsel>> sensorZones;  ///< bound to sensors, in order
};

/// Loads a document that was checked. What it was checked as is what is loaded: its text is not read again.
/// @throws whatever the library's load throws
Configuration load(const LocatedNode& document);

}  // namespace orvantis::toolkit
