#pragma once

#include <map>
#include <string>

#include <filter/detection/CounterLine.h>
#include <filter/detection/ZoneDetector.h>

namespace orvantis::app {

/// What a zone document holds for this program.
struct Configuration {
  filter::detection::ZoneDetector detector;
  std::map<std::string, filter::detection::CounterLine> lines;
};

/// One byte more than the library reads, so that a file which is too large still looks too large.
constexpr std::size_t documentReadLimit = 102401;

/// Checks and loads a zone document.
/// @throws Failure with the path and what is wrong with the document
Configuration loadConfiguration(const std::string& path);

}  // namespace orvantis::app
