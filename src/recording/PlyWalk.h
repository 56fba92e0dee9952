#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "recording/PlyHeader.h"

namespace orvantis::toolkit {

/// Goes over the elements of a binary PLY file, where lists make each one as long as it says itself.
class PlyWalk {
 public:
  /// @param offset where the elements begin
  PlyWalk(std::span<const std::byte> bytes, std::size_t offset, bool isBigEndian)
      : bytes_(bytes), at_(offset), isBigEndian_(isBigEndian) {}

  std::size_t at() const { return at_; }
  /// How many of an element there can be at most in what is left, its lists empty.
  std::uint64_t most(const PlyElement& element) const;

  /// Over all of an element, in time that grows with the bytes and not with a number of the header.
  /// @throws ReadError when they are not there
  void skip(const PlyElement& element);

  /// Over one property of the element number `index`. @return where its value, or its list's length, lies
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
