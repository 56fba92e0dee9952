#pragma once

#include <cstddef>
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

/// The library refuses documents of so many bytes, and larger ones, so no more need be read.
constexpr std::size_t documentSizeLimit = 102400;

/// Checks and loads a zone document.
/// @throws Failure with the path and what is wrong with the document
Configuration loadConfiguration(const std::string& path);

}  // namespace orvantis::app
