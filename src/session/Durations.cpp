#include "session/Durations.h"

#include <algorithm>

namespace orvantis::toolkit {

using filter::monitor::Duration;

namespace {

Duration rounded(Duration duration) {
  std::int64_t unit = 1;
  while (duration.count() / unit >= 10'000) {
    unit *= 10;
  }
  const std::int64_t below = duration.count() / unit;
  const std::int64_t rest = duration.count() % unit;
  return Duration((below + (rest >= unit - rest ? 1 : 0)) * unit);
}

}  // namespace

void Durations::add(Duration duration) {
  ++counts_[rounded(duration)];
  ++count_;
  longest_ = std::max(longest_.value_or(duration), duration);
}

Duration Durations::inOrder(std::uint64_t position) const {
  auto entry = counts_.begin();
  while (position >= entry->second) {
    position -= entry->second;
    ++entry;
  }
  return entry->first;
}

std::optional<Duration> Durations::median() const {
  if (count_ == 0) {
    return std::nullopt;
  }
  const Duration lower = inOrder((count_ - 1) / 2);
  const Duration upper = inOrder(count_ / 2);
  return lower + (upper - lower) / 2;
}

}  // namespace orvantis::toolkit
