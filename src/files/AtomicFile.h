#pragma once

#include <string>
#include <string_view>

#include <sys/types.h>

namespace orvantis::toolkit {

/// A file that is written whole or not at all: a new file in the same folder, named as the old one with
/// `.part` and a number behind it, takes the place of the old one only when every byte is on the disk. A path
/// that names something else than a file, such as /dev/stdout, is written to directly.
///
/// What fails throws a Failure with the path and the reason; the old file is then as it was and nothing else
/// is left behind.
class AtomicFile {
 public:
  explicit AtomicFile(const std::string& path);
  AtomicFile(AtomicFile&& other) noexcept;
  AtomicFile& operator=(AtomicFile&& other) = delete;
  ~AtomicFile();  ///< without `commit` there is no new file

  void append(std::string_view text);
  /// Once, after the last `append`.
  void commit();

 private:
  [[noreturn]] void fail(int reason) const;
  void write();
  bool isDirect() const { return part_.empty(); }

  std::string path_;    // as the user named it
  std::string target_;  // through links
  std::string part_;    // empty: written to directly
  std::string buffer_;  // not yet written
  int file_ = -1;
};

/// A file with this content, in the same way.
void writeWhole(const std::string& path, const std::string& content);

}  // namespace orvantis::toolkit
