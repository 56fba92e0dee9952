#include "support/Settings.h"

#include <sstream>

#include <gtest/gtest.h>

namespace orvantis::testing {

void loadText(SettingsManager& settings, const std::string& json) {
  std::istringstream in(json);
  ASSERT_TRUE(settings.loadStream(in, SettingsManager::JSON)) << settings.getLoadError();
}

std::string saveText(const SettingsManager& settings) {
  std::ostringstream out;
  EXPECT_TRUE(settings.saveStream(out, SettingsManager::JSON));
  return out.str();
}

}  // namespace orvantis::testing
