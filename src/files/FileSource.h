#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "files/ByteSource.h"

namespace orvantis::toolkit {

/// A file that is read in ranges into a buffer, which is reused and as large as the largest range so far. Its
/// size is that when it was opened. If the file becomes shorter, the spans end early.
class FileSource final : public ByteSource {
 public:
  /// @throws Failure with the path and the reason
  explicit FileSource(const std::string& path);
  ~FileSource() override;
  FileSource(const FileSource&) = delete;
  FileSource& operator=(const FileSource&) = delete;

  std::optional<std::uint64_t> size() const override { return size_; }

  /// @throws Failure when the system cannot read
  std::span<const std::byte> bytes(std::uint64_t offset, std::uint64_t count) override;

 private:
  void fill(std::uint64_t offset, std::size_t count);

  std::string path_;
  int file_ = -1;
  std::uint64_t size_;
  std::vector<std::byte> buffer_;
  std::uint64_t begin_ = 0;  ///< the offset of the buffer's first byte
  std::size_t held_ = 0;
};

}  // namespace orvantis::toolkit
