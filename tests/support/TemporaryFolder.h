#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace orvantis::testing {

/// A fresh folder that goes away with the object.
class TemporaryFolder {
 public:
  TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder();

  std::string path(const std::string& name = "") const { return (folder_ / name).string(); }
  /// Writes a file into the folder.
  /// @return its path
  std::string write(const std::string& name, std::string_view content) const;
  std::size_t fileCount() const;

 private:
  std::filesystem::path folder_;
};

std::string readAll(const std::string& path);

}  // namespace orvantis::testing
