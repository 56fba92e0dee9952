#include "recording/PlyWalk.h"

#include <string>

#include "recording/Bytes.h"
#include "recording/Quoted.h"
#include "recording/ReadError.h"

namespace orvantis::toolkit {
namespace {

template <typename Number>
std::int64_t integer(const std::byte* at, bool isBigEndian) {
  return static_cast<std::int64_t>(isBigEndian ? load<true, Number>(at) : load<false, Number>(at));
}

// An unsigned number of 8 bytes that is too large becomes negative. As a length, both are impossible.
std::int64_t integer(NumberType type, const std::byte* at, bool isBigEndian) {
  switch (type) {
    case NumberType::I1:
      return integer<std::int8_t>(at, isBigEndian);
    case NumberType::U1:
      return integer<std::uint8_t>(at, isBigEndian);
    case NumberType::I2:
      return integer<std::int16_t>(at, isBigEndian);
    case NumberType::U2:
      return integer<std::uint16_t>(at, isBigEndian);
    case NumberType::I4:
      return integer<std::int32_t>(at, isBigEndian);
    case NumberType::U4:
      return integer<std::uint32_t>(at, isBigEndian);
    default:
      return integer<std::int64_t>(at, isBigEndian);
  }
}

}  // namespace

std::uint64_t PlyWalk::most(const PlyElement& element) const {
  std::uint64_t size = 0;
  for (const PlyProperty& property : element.properties) {
    size += sizeOf(property.isList ? property.lengthType : property.type);
  }
  return size == 0 ? element.count : (bytes_.size() - at_) / size;
}

void PlyWalk::skip(const PlyElement& element) {
  if (!element.hasList()) {
    const std::uint64_t size = element.size();
    const std::uint64_t left = bytes_.size() - at_;
    if (size != 0 && element.count > left / size) {
      refuseShort(element, left / size);
    }
    at_ += static_cast<std::size_t>(element.count * size);
    return;
  }
  for (std::uint64_t i = 0; i < element.count; ++i) {
    for (const PlyProperty& property : element.properties) {
      take(element, i, property);
    }
  }
}

const std::byte* PlyWalk::take(const PlyElement& element, std::uint64_t index, const PlyProperty& property) {
  if (!property.isList) {
    return takeBytes(element, index, 1, sizeOf(property.type));
  }
  const std::byte* const length = takeBytes(element, index, 1, sizeOf(property.lengthType));
  takeBytes(element, index, lengthOf(element, property.lengthType, length), sizeOf(property.type));
  return length;
}

const std::byte* PlyWalk::takeBytes(const PlyElement& element, std::uint64_t index, std::uint64_t count,
                                    std::uint64_t size) {
  if (count > (bytes_.size() - at_) / size) {
    refuseShort(element, index);
  }
  const std::byte* const begin = bytes_.data() + at_;
  at_ += static_cast<std::size_t>(count * size);
  return begin;
}

void PlyWalk::refuseShort(const PlyElement& element, std::uint64_t index) const {
  throw ReadError(atByte(bytes_.size()), "the file ends inside element " + quoted(element.name) + " number " +
                                             std::to_string(index + 1) + " of " +
                                             std::to_string(element.count));
}

std::uint64_t PlyWalk::lengthOf(const PlyElement& element, NumberType type, const std::byte* at) const {
  const std::int64_t length = integer(type, at, isBigEndian_);
  if (length < 0) {
    throw ReadError(atByte(static_cast<std::uint64_t>(at - bytes_.data())),
                    "a list of element " + quoted(element.name) + " has an impossible length");
  }
  return static_cast<std::uint64_t>(length);
}

}  // namespace orvantis::toolkit
