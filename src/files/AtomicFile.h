#pragma once

#include <string>
#include <string_view>

#include <sys/types.h>

namespace orvantis::toolkit {

/// A file that is written whole or not at all. The bytes go to a new file in the same folder, named like the
/// old one with `.part` and a number at the end. It replaces the old file only when every byte is on the
/// disk. A path that is not that of a file, such as /dev/stdout, is written to directly.
///
/// Every operation throws a Failure with the path and the reason when it fails. The old file is then
/// unchanged, and the new file is removed.
class AtomicFile {
 public:
  explicit AtomicFile(const std::string& path);
  AtomicFile(AtomicFile&& other) noexcept;
  AtomicFile& operator=(AtomicFile&& other) = delete;
  ~AtomicFile();  ///< without `commit`, removes the new file

  void append(std::string_view text);
  /// Replaces the old file. Call it once, after the last `append`.
  void commit();

 private:
  [[noreturn]] void fail(int reason) const;
  void write();
  bool isDirect() const { return part_.empty(); }

  std::string path_;    // as the user named it
  std::string target_;  // the file itself, behind links
  std::string part_;    // the new file; empty: the target is written to directly
  std::string buffer_;  // bytes that are not written yet
  int file_ = -1;
};

/// A file with this content, in the same way.
void writeWhole(const std::string& path, const std::string& content);

}  // namespace orvantis::toolkit
