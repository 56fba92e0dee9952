#pragma once

#include <cstddef>
#include <map>
#include <string>

#include <filter/detection/CounterLine.h>
#include <filter/detection/ZoneDetector.h>

namespace orvantis::toolkit {

/// What a zone document holds.
struct Configuration {
  filter::detection::ZoneDetector detector;
  std::map<std::string, filter::detection::CounterLine> lines;
};

/// The library refuses documents of so many bytes, and larger ones, so no more need be read.
constexpr std::size_t documentSizeLimit = 102400;

/// Checks and loads the text of a zone document.
/// @throws std::runtime_error with what is wrong with it
Configuration loadConfiguration(const std::string& text);

}  // namespace orvantis::toolkit
