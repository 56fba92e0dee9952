#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "mutators/Chance.h"

namespace orvantis::fuzz {

using Content = std::vector<std::uint8_t>;

/// From one offset to another.
struct Span {
  std::size_t begin;
  std::size_t end;

  std::size_t size() const { return end - begin; }
};

Content bytesOf(const Content& content, Span span);
Content contentOf(const std::string& text);

/// Puts a text or bytes in the place of others.
void replace(Content& content, Span span, const Content& by);

/// A little-endian number of 1 to 8 bytes. They must be there.
std::uint64_t numberAt(const Content& content, std::size_t offset, std::size_t width);
void setNumber(Content& content, std::size_t offset, std::size_t width, std::uint64_t number);

/// Makes the number one that readers may get wrong: 0, the largest, one more, a size of the content.
void changeNumber(Content& content, std::size_t offset, std::size_t width, Chance& chance);

/// Changes numbers somewhere, or how many bytes there are. The content may be empty.
void changeAnywhere(Content& content, Chance& chance);

/// A number as text that readers may get wrong: out of range, not finite, with many digits.
std::string oddNumber(Chance& chance);

}  // namespace orvantis::fuzz
