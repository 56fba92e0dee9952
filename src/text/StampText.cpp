#include "text/StampText.h"

#include <cstdint>

#include "text/Number.h"

namespace orvantis::toolkit {

double toSeconds(std::chrono::nanoseconds time) {
  return static_cast<double>(static_cast<long double>(time.count()) / 1e9L);
}

std::string toText(std::chrono::nanoseconds time) {
  constexpr std::uint64_t second = 1'000'000'000;
  const bool isNegative = time.count() < 0;
  const auto count = static_cast<std::uint64_t>(time.count());
  const std::uint64_t size = isNegative ? 0 - count : count;
  std::string text = (isNegative ? "-" : "") + std::to_string(size / second);
  if (size % second != 0) {
    const std::string fraction = std::to_string(second + size % second).substr(1);
    text += "." + fraction.substr(0, fraction.find_last_not_of('0') + 1);
  }
  return text;
}

std::string toMilliseconds(std::chrono::nanoseconds time) {
  return toFixed(toSeconds(time), 3);
}

}  // namespace orvantis::toolkit
