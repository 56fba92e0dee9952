#include "document/Configuration.h"

#include <sstream>
#include <stdexcept>

#include <filter/detection/CounterLines.h>
#include <settings/SettingsManager.h>

namespace orvantis::toolkit {

Configuration loadConfiguration(const std::string& text) {
  std::istringstream in(text);
  filter::detection::ZoneDetector::validate(in);
  in.clear();
  in.seekg(0);
  SettingsManager settings;
  if (!settings.loadStream(in, SettingsManager::JSON)) {
    throw std::runtime_error(settings.getLoadError());
  }
  Configuration configuration;
  configuration.detector.load(settings);
  // Loading the detector ends one level above where it began, at the root: the lines stand there.
  filter::detection::CounterLines lines;
  lines.load(settings);
  configuration.lines = lines.clone();
  return configuration;
}

}  // namespace orvantis::toolkit
