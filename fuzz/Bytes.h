#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace orvantis::fuzz {

/// Takes values from the front of an input. After its end, every value is 0.
class Bytes {
 public:
  Bytes(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

  bool isEmpty() const { return size_ == 0; }

  template <typename T>
  T take() {
    T value{};
    const std::size_t count = size_ < sizeof(T) ? size_ : sizeof(T);
    if (count != 0) {
      std::memcpy(&value, data_, count);
    }
    data_ += count;
    size_ -= count;
    return value;
  }

 private:
  const std::uint8_t* data_;
  std::size_t size_;
};

}  // namespace orvantis::fuzz
