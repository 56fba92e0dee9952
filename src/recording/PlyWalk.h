#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "recording/PlyHeader.h"

namespace orvantis::toolkit {

/// Goes over the elements of a binary PLY file. Lists may give each element another size.
class PlyWalk {
 public:
  /// @param offset where the elements begin
  PlyWalk(std::span<const std::byte> bytes, std::size_t offset, bool isBigEndian)
      : bytes_(bytes), at_(offset), isBigEndian_(isBigEndian) {}

  std::size_t at() const { return at_; }
  /// The most elements of that kind that fit into the rest of the bytes, with empty lists.
  std::uint64_t most(const PlyElement& element) const;

  /// Skips all elements of that kind. The time depends on the bytes, not on a number in the header.
  /// @throws ReadError when the bytes end before
  void skip(const PlyElement& element);

  /// Goes over one property of element number `index`. @return the place of its value, or of its list's
  /// length
  const std::byte* take(const PlyElement& element, std::uint64_t index, const PlyProperty& property);

 private:
  const std::byte* takeBytes(const PlyElement& element, std::uint64_t index, std::uint64_t count,
                             std::uint64_t size);
  [[noreturn]] void refuseShort(const PlyElement& element, std::uint64_t index) const;
  std::uint64_t lengthOf(const PlyElement& element, NumberType type, const std::byte* at) const;

  std::span<const std::byte> bytes_;
  std::size_t at_;
  bool isBigEndian_;
};

}  // namespace orvantis::toolkit
