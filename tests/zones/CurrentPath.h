#pragma once

#include <string>

#include <settings/SettingsManager.h>

namespace orvantis::testing {

/// The text of the store's current path; empty at the root.
std::string currentPath(SettingsManager& settings);

}  // namespace orvantis::testing
