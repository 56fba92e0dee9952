#pragma once

#include <optional>

#include <filter/monitor/Stamp.h>

namespace orvantis::filter::monitor {

/// The time from one stamp to a later one; when no Duration is that long, the longest Duration.
Duration elapsed(Stamp from, Stamp to);

/// The stamp at a share of the way from one stamp to a later one: 0 is the first, 1 the second.
Stamp between(Stamp from, Stamp to, double share);

/// @throws std::invalid_argument unless the time after which tracks are forgotten is above zero
void requireForgetAfter(Duration forgetAfter);

/// @throws std::invalid_argument, naming both stamps, unless the stamp is later than the last one
void requireLater(Stamp stamp, const std::optional<Stamp>& last);

/// Checks the order of the stamps that one monitor is given. Each frame must be later than the frame before.
/// Time may pass between frames, up to the stamp of the next frame.
class Clock {
 public:
  /// @throws std::invalid_argument, naming both stamps, unless the stamp is later than the last frame's and
  ///   time has not passed beyond it
  void requireFrame(Stamp stamp) const;
  /// @throws std::invalid_argument, naming both stamps, when the stamp is earlier than the last one
  void requirePassing(Stamp stamp) const;

  /// Only after `requireFrame`.
  void takeFrame(Stamp stamp) { lastFrame_ = now_ = stamp; }
  /// Only after `requirePassing`.
  void pass(Stamp stamp) { now_ = stamp; }

  const std::optional<Stamp>& lastFrame() const { return lastFrame_; }

 private:
  std::optional<Stamp> lastFrame_;
  std::optional<Stamp> now_;
};

}  // namespace orvantis::filter::monitor
