#pragma once

#include <functional>
#include <string>
#include <vector>

#include "document/Configuration.h"
#include "document/SensorList.h"

namespace orvantis::toolkit {

/// Reads and checks a list of sensors.
/// @param clouds the files of the sensors that name no files
/// @param tell is given each warning of the check, with its place
/// @return the sensors with their files, relative to the working folder
/// @throws Failure with the path and every error
std::vector<Sensor> readSensors(const std::string& path, const std::vector<std::string>& clouds,
                                const std::function<void(const std::string&)>& tell);

/// A warning for each name of a sensor that a zone is bound to, and that is not in the list.
std::vector<std::string> unknownSensors(const Configuration& configuration,
                                        const std::vector<Sensor>& sensors);

}  // namespace orvantis::toolkit
