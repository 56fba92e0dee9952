#pragma once

#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>

#include "Check.h"

namespace orvantis::fuzz {

/// The input as a file, for readers that take a path. It is in a new folder inside of the system's temporary
/// folder. The destructor removes both.
class InputFile {
 public:
  InputFile() {
    std::string name = (std::filesystem::temp_directory_path() / "zone-detector-fuzz-XXXXXX").string();
    ORVANTIS_FUZZ_CHECK(::mkdtemp(name.data()) != nullptr);
    folder_ = name;
  }
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;
  ~InputFile() {
    std::error_code error;
    std::filesystem::remove_all(folder_, error);
  }

  void write(std::string_view bytes) const {
    std::ofstream out(folder_ / "input", std::ios::binary);
    out << bytes;
    out.close();
    ORVANTIS_FUZZ_CHECK(out.good());
  }

  /// Gives the same file another name, since the end of the name tells the kind.
  std::string as(const std::string& name) const {
    std::error_code error;
    std::filesystem::create_symlink("input", folder_ / name, error);  // fails when it exists already
    return (folder_ / name).string();
  }

 private:
  std::filesystem::path folder_;
};

}  // namespace orvantis::fuzz
