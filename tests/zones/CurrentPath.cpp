#include "zones/CurrentPath.h"

namespace orvantis::testing {

std::string currentPath(SettingsManager& settings) {
  const std::string probe = "probe";
  const std::string entered = settings.pathPush(probe);
  settings.pathPop();
  return entered == probe ? std::string() : entered.substr(0, entered.size() - probe.size() - 1);
}

}  // namespace orvantis::testing
