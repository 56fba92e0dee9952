#include "Configuration.h"

#include <sstream>

#include <filter/detection/CounterLines.h>
#include <settings/SettingsManager.h>

#include "Console.h"
#include "File.h"
#include "Text.h"

namespace orvantis::app {

Configuration loadConfiguration(const std::string& path) {
  std::istringstream in(readFile(path, documentSizeLimit));
  Configuration configuration;
  try {
    filter::detection::ZoneDetector::validate(in);
    in.clear();
    in.seekg(0);
    SettingsManager settings;
    if (!settings.loadStream(in, SettingsManager::JSON)) {
      throw std::runtime_error(settings.getLoadError());
    }
    configuration.detector.load(settings);
    // Loading the detector ends one level above where it began, at the root: the lines stand there.
    filter::detection::CounterLines lines;
    lines.load(settings);
    configuration.lines = lines.clone();
  } catch (const std::exception& error) {
    throw Failure(path + ": " + printable(error.what()) + " (zone-detector validate shows where)");
  }
  return configuration;
}

}  // namespace orvantis::app
