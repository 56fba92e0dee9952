#pragma once

#include <cstdint>
#include <map>
#include <optional>

#include <filter/monitor/Stamp.h>

namespace orvantis::toolkit {

/// The middle and the longest of any number of durations, none of them below zero. Memory does not grow with
/// their number: the middle one is known to four significant digits.
class Durations {
 public:
  void add(filter::monitor::Duration duration);

  std::uint64_t count() const { return count_; }
  /// Of an even number the middle between the two. Nothing if there is none.
  std::optional<filter::monitor::Duration> median() const;
  std::optional<filter::monitor::Duration> longest() const { return longest_; }

 private:
  filter::monitor::Duration inOrder(std::uint64_t position) const;

  std::map<filter::monitor::Duration, std::uint64_t> counts_;  // by rounded duration
  std::uint64_t count_ = 0;
  std::optional<filter::monitor::Duration> longest_;
};

}  // namespace orvantis::toolkit
