#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

#include "mutators/Mutators.h"

namespace orvantis::fuzz {

bool mutateFloats(Content& content, Chance& chance) {
  using Limits = std::numeric_limits<float>;
  constexpr std::array<float, 14> odd{0.0F,
                                      -0.0F,
                                      1.0F,
                                      -2.5F,
                                      100.0F,
                                      1e5F,
                                      1e30F,
                                      Limits::max(),
                                      Limits::min(),
                                      Limits::denorm_min(),
                                      Limits::infinity(),
                                      -Limits::infinity(),
                                      Limits::quiet_NaN(),
                                      0.5F};
  constexpr std::size_t width = sizeof(float);
  if (content.size() < 1 + width) {
    return false;
  }
  const std::size_t numFloats = (content.size() - 1) / width;
  const std::size_t first = 1 + width * chance.below(numFloats);
  const std::size_t second = 1 + width * chance.below(numFloats);
  const Content number = bytesOf(content, {first, first + width});
  switch (chance.below(4)) {
    case 0:
      replace(content, {second, second + width}, number);
      break;
    case 1:
      // One number more or less makes other columns possible.
      replace(content, {second, second}, number);
      break;
    case 2:
      replace(content, {second, second + width}, {});
      break;
    default:
      setNumber(content, first, width, std::bit_cast<std::uint32_t>(odd[chance.below(odd.size())]));
  }
  return true;
}

}  // namespace orvantis::fuzz
