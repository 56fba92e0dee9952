#pragma once

#include <string>

#include <settings/SettingsManager.h>

namespace orvantis::testing {

/// Fills the store from JSON text; a text that does not parse fails the test.
void loadText(SettingsManager& settings, const std::string& json);

/// The whole document as JSON text.
std::string saveText(const SettingsManager& settings);

}  // namespace orvantis::testing
