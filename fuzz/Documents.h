#pragma once

#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

#include <settings/SettingsManager.h>

namespace orvantis::fuzz {

/// Fills the store from the input. False when the input is not a document.
inline bool loadDocument(SettingsManager& settings, const std::uint8_t* data, std::size_t size) {
  std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
  return settings.loadStream(in, SettingsManager::JSON);
}

/// The whole document as text; empty when the store refuses to write it.
inline std::string documentText(const SettingsManager& settings) {
  std::ostringstream out;
  return settings.saveStream(out, SettingsManager::JSON) ? out.str() : std::string();
}

}  // namespace orvantis::fuzz
