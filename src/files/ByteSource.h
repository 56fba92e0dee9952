#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace orvantis::toolkit {

/// Bytes that are read in ranges, so that a recording need not fit into memory: a file, a part of one in a
/// browser, a block of memory.
///
/// One object is for one reader at a time.
class ByteSource {
 public:
  virtual ~ByteSource() = default;

  /// The number of bytes; nothing when only reading can tell it. Such a source is read forwards: each offset
  /// is at least that of the call before. Throws nothing.
  virtual std::optional<std::uint64_t> size() const = 0;

  /// The bytes from `offset` on: `count` bytes, or fewer if the source ends before. Takes no memory for bytes
  /// that do not exist, however large `count` is. The span is valid until the next call.
  /// @throws what the source throws when it cannot be read
  virtual std::span<const std::byte> bytes(std::uint64_t offset, std::uint64_t count) = 0;

 protected:
  ByteSource() = default;
  ByteSource(const ByteSource&) = default;
  ByteSource& operator=(const ByteSource&) = default;
};

/// Bytes in memory that the caller owns. They are not copied.
class MemorySource final : public ByteSource {
 public:
  explicit MemorySource(std::span<const std::byte> bytes) : bytes_(bytes) {}

  std::optional<std::uint64_t> size() const override { return bytes_.size(); }
  std::span<const std::byte> bytes(std::uint64_t offset, std::uint64_t count) override {
    const auto begin = static_cast<std::size_t>(std::min<std::uint64_t>(offset, bytes_.size()));
    return bytes_.subspan(begin,
                          static_cast<std::size_t>(std::min<std::uint64_t>(count, bytes_.size() - begin)));
  }

 private:
  std::span<const std::byte> bytes_;
};

}  // namespace orvantis::toolkit
