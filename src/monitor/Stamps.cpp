#include "monitor/Stamps.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <stdexcept>
#include <string>

namespace orvantis::filter::monitor {

Duration elapsed(Stamp from, Stamp to) {
  // Unsigned, because the difference of two far stamps overflows a signed number.
  const std::uint64_t ticks =
      static_cast<std::uint64_t>(to.count()) - static_cast<std::uint64_t>(from.count());
  const auto longest = static_cast<std::uint64_t>(Duration::max().count());
  return ticks > longest ? Duration::max() : Duration(static_cast<Duration::rep>(ticks));
}

Stamp between(Stamp from, Stamp to, double share) {
  const Duration whole = elapsed(from, to);
  const double ticks = share * static_cast<double>(whole.count());
  // Beyond 2^53 ns the product may round up to more than the whole, and to more than an integer holds.
  if (!(ticks < static_cast<double>(whole.count()))) {
    return to;
  }
  return from + std::min(Duration(std::llround(ticks)), whole);
}

void requireForgetAfter(Duration forgetAfter) {
  if (!(forgetAfter > Duration::zero())) {
    throw std::invalid_argument("The time after which tracks are forgotten must be above zero");
  }
}

void requireLater(Stamp stamp, const std::optional<Stamp>& last) {
  if (last && stamp <= *last) {
    throw std::invalid_argument("The stamp " + std::to_string(stamp.count()) +
                                " ns is not later than the last one, " + std::to_string(last->count()) +
                                " ns");
  }
}

void Clock::requireFrame(Stamp stamp) const {
  requireLater(stamp, lastFrame_);
  requirePassing(stamp);
}

void Clock::requirePassing(Stamp stamp) const {
  if (now_ && stamp < *now_) {
    throw std::invalid_argument("The stamp " + std::to_string(stamp.count()) +
                                " ns is earlier than the last one, " + std::to_string(now_->count()) + " ns");
  }
}

}  // namespace orvantis::filter::monitor
