#include "mutators/Content.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace orvantis::fuzz {

Content bytesOf(const Content& content, Span span) {
  const auto begin = content.begin();
  return {begin + static_cast<std::ptrdiff_t>(span.begin), begin + static_cast<std::ptrdiff_t>(span.end)};
}

Content contentOf(const std::string& text) {
  return {text.begin(), text.end()};
}

void replace(Content& content, Span span, const Content& by) {
  const auto begin = content.begin() + static_cast<std::ptrdiff_t>(span.begin);
  const auto next = content.erase(begin, begin + static_cast<std::ptrdiff_t>(span.size()));
  content.insert(next, by.begin(), by.end());
}

std::uint64_t numberAt(const Content& content, std::size_t offset, std::size_t width) {
  std::uint64_t number = 0;
  for (std::size_t i = 0; i < width; ++i) {
    number |= std::uint64_t{content[offset + i]} << 8U * i;
  }
  return number;
}

void setNumber(Content& content, std::size_t offset, std::size_t width, std::uint64_t number) {
  for (std::size_t i = 0; i < width; ++i) {
    content[offset + i] = static_cast<std::uint8_t>(number >> 8U * i);
  }
}

void changeNumber(Content& content, std::size_t offset, std::size_t width, Chance& chance) {
  const std::uint64_t number = numberAt(content, offset, width);
  const std::array<std::uint64_t, 12> numbers{0,
                                              1,
                                              ~std::uint64_t{0},
                                              std::uint64_t{1} << (8U * width - 1U),
                                              (std::uint64_t{1} << (8U * width - 1U)) - 1U,
                                              number + 1,
                                              number - 1,
                                              2 * number,
                                              number / 2,
                                              content.size(),
                                              content.size() - offset,
                                              number + (std::uint64_t{1} << 32U)};
  setNumber(content, offset, width, numbers[chance.below(numbers.size())]);
}

void changeAnywhere(Content& content, Chance& chance) {
  constexpr std::size_t mostBytes = 16;
  const std::size_t width = std::size_t{1} << chance.below(4);
  if (content.size() >= width && !content.empty() && !chance.oneIn(4)) {
    changeNumber(content, chance.below(content.size() - width + 1), width, chance);
    return;
  }
  const std::size_t begin = chance.below(content.size() + 1);
  const std::size_t count = 1 + chance.below(mostBytes);
  if (chance.oneIn(2)) {
    replace(content, {begin, std::min(content.size(), begin + count)}, {});
  } else {
    replace(content, {begin, begin}, Content(count, static_cast<std::uint8_t>(chance.below(256))));
  }
}

std::string oddNumber(Chance& chance) {
  constexpr std::array<std::string_view, 20> numbers{"0",
                                                     "-0",
                                                     "1",
                                                     "-1",
                                                     "0.1",
                                                     "1e308",
                                                     "-1e308",
                                                     "1e309",
                                                     "1e-320",
                                                     "5e-324",
                                                     "1e-400",
                                                     "nan",
                                                     "inf",
                                                     "-inf",
                                                     "2147483648",
                                                     "-2147483649",
                                                     "18446744073709551616",
                                                     "9007199254740993",
                                                     "0.30000000000000004",
                                                     "1.7976931348623157e308"};
  return std::string(numbers[chance.below(numbers.size())]);
}

}  // namespace orvantis::fuzz
