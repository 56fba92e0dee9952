#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "files/ByteSource.h"

namespace orvantis::engine {

/// A file of the page, which the host reads in ranges.
class HostSource final : public toolkit::ByteSource {
 public:
  /// @param number by which the host knows the file
  HostSource(std::string name, int number, std::uint64_t size);

  std::optional<std::uint64_t> size() const override { return size_; }
  /// @throws Failure when the host cannot read
  std::span<const std::byte> bytes(std::uint64_t offset, std::uint64_t count) override;

 private:
  std::string name_;
  int number_;
  std::uint64_t size_;
  std::vector<std::byte> buffer_;
  std::uint64_t begin_ = 0;  // the offset of the buffer's first byte
};

}  // namespace orvantis::engine
