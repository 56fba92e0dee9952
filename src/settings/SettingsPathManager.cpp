#include <settings/SettingsPathManager.h>

namespace orvantis::utils {

SettingsPathManager::SettingsPathManager(SettingsManager& manager, const std::string& name, int index)
    : manager_(manager) {
  manager_.pathPush(name, index, nullptr);
}

SettingsPathManager::~SettingsPathManager() {
  manager_.pathPop();
}

}  // namespace orvantis::utils
