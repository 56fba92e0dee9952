#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "files/ByteSource.h"

namespace orvantis::toolkit {

/// The content of a file that is compressed as a whole with Zstandard. It is read forwards. Only the last
/// range that was asked for, and one step of the decoder, are in memory.
class ZstdSource final : public ByteSource {
 public:
  /// The source must outlive this one.
  /// @throws std::bad_alloc
  explicit ZstdSource(ByteSource& compressed);
  ~ZstdSource() override;
  ZstdSource(const ZstdSource&) = delete;
  ZstdSource& operator=(const ZstdSource&) = delete;

  std::optional<std::uint64_t> size() const override { return std::nullopt; }

  /// @throws ReadError when the compressed bytes are damaged, or when more bytes are asked for at once than
  ///   `unfoldedLimit` allows. When the compressed bytes are cut off, this source ends there, and throws when
  ///   it is asked for more
  std::span<const std::byte> bytes(std::uint64_t offset, std::uint64_t count) override;

 private:
  class Stream;

  // Adds the bytes of one step to the buffer. @return whether there were any
  bool grow();

  ByteSource& compressed_;
  std::unique_ptr<Stream> stream_;
  std::uint64_t taken_ = 0;  ///< how many compressed bytes were read
  std::uint64_t begin_ = 0;  ///< the offset of the first byte held
  std::vector<std::byte> buffer_;
  std::size_t first_ = 0;  ///< the bytes held are [first_, end_) of the buffer
  std::size_t end_ = 0;
};

}  // namespace orvantis::toolkit
