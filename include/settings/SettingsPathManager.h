#pragma once

#include <string>

#include <orvantis/Api.h>
#include <settings/SettingsManager.h>

namespace orvantis::utils {

/// Enters a child for the length of a scope. Its destructor leaves the node again, also while an exception
/// passes.
class ORVANTIS_API SettingsPathManager {
 public:
  /// Enters as `manager.pathPush(name, index, nullptr)` does.
  /// @param manager must outlive this object
  /// @throws what `pathPush` throws
  SettingsPathManager(SettingsManager& manager, const std::string& name, int index);
  SettingsPathManager(const SettingsPathManager&) = delete;
  SettingsPathManager& operator=(const SettingsPathManager&) = delete;
  /// Leaves the node. Throws nothing.
  ~SettingsPathManager();

 private:
  SettingsManager& manager_;
};

}  // namespace orvantis::utils
