#pragma once

#include <cstdint>
#include <map>
#include <optional>

#include <filter/monitor/Stamp.h>

namespace orvantis::toolkit {

/// The median and the longest of any number of durations, which must not be below zero. Memory does not grow
/// with their number, because durations are rounded to four significant digits for the median.
class Durations {
 public:
  void add(filter::monitor::Duration duration);

  std::uint64_t count() const { return count_; }
  /// For an even number of durations, the mean of the middle two. Nothing when there is no duration.
  std::optional<filter::monitor::Duration> median() const;
  std::optional<filter::monitor::Duration> longest() const { return longest_; }

 private:
  filter::monitor::Duration inOrder(std::uint64_t position) const;

  std::map<filter::monitor::Duration, std::uint64_t> counts_;  // by rounded duration
  std::uint64_t count_ = 0;
  std::optional<filter::monitor::Duration> longest_;
};

}  // namespace orvantis::toolkit
