#include "support/TemporaryFolder.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace orvantis::testing {

TemporaryFolder::TemporaryFolder() {
  std::string name = (std::filesystem::temp_directory_path() / "zone-detector-test-XXXXXX").string();
  if (::mkdtemp(name.data()) == nullptr) {
    throw std::runtime_error("no temporary folder: " + name);
  }
  folder_ = name;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code error;
  std::filesystem::remove_all(folder_, error);
}

std::string TemporaryFolder::write(const std::string& name, std::string_view content) const {
  std::ofstream(path(name), std::ios::binary) << content;
  return path(name);
}

std::size_t TemporaryFolder::fileCount() const {
  return static_cast<std::size_t>(
      std::distance(std::filesystem::directory_iterator(folder_), std::filesystem::directory_iterator()));
}

std::string readAll(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

}  // namespace orvantis::testing
