#pragma once

#include <string>
#include <vector>

#include "document/Configuration.h"
#include "document/SensorList.h"

namespace orvantis::app {

struct Console;

/// Reads and checks a list of sensors. Its warnings go to the error stream.
/// @param clouds the files of the sensors that name no files
/// @return the sensors with their files, relative to the working folder
/// @throws Failure with the path and every error
std::vector<toolkit::Sensor> readSensors(const std::string& path, const std::vector<std::string>& clouds,
                                         const Console& console);

/// Warns of zones that are bound to a sensor which is not in the list.
void warnOfUnknownSensors(const toolkit::Configuration& configuration,
                          const std::vector<toolkit::Sensor>& sensors, const Console& console);

}  // namespace orvantis::app
