#pragma once

#include <string>
#include <vector>

#include "session/HeightWatch.h"

namespace orvantis::toolkit {

/// A text for each zone whose heights have no points, or nearly none, between them.
std::vector<std::string> warningsOf(const HeightWatch& heights);

}  // namespace orvantis::toolkit
