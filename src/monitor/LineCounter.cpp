#include <filter/monitor/LineCounter.h>

#include "monitor/LineCounterImpl.h"

namespace orvantis::filter::monitor {

LineCounter::LineCounter(const std::map<std::string, detection::CounterLine>& lines,
                         const LineCounterOptions& options)
    : impl_(std::make_unique<Impl>(lines, options)) {}

LineCounter::LineCounter(const LineCounter& other) : impl_(std::make_unique<Impl>(other.impl())) {}

LineCounter::LineCounter(LineCounter&& other) noexcept = default;

LineCounter& LineCounter::operator=(const LineCounter& other) {
  return *this = LineCounter(other);
}

LineCounter& LineCounter::operator=(LineCounter&& other) noexcept = default;

LineCounter::~LineCounter() = default;

// A counter that was moved from goes on as one without lines.
const LineCounter::Impl& LineCounter::impl() const {
  static const Impl withoutLines;
  return impl_ ? *impl_ : withoutLines;
}

LineCounter::Impl& LineCounter::impl() {
  if (!impl_) {
    impl_ = std::make_unique<Impl>();
  }
  return *impl_;
}

std::vector<Crossing> LineCounter::update(Stamp stamp, const std::vector<TrackedObject>& objects) {
  return impl().update(stamp, objects);
}

void LineCounter::advance(Stamp stamp) {
  impl().advance(stamp);
}

const std::vector<LineTally>& LineCounter::tallies() const {
  return impl().tallies();
}

void LineCounter::resetTallies() {
  impl().resetTallies();
}

detection::CounterLineDirections LineCounter::directions(const std::string& line) const {
  detection::CounterLineDirections directions;
  impl().forEachTrack(line, [&](std::int32_t id, const Passages& passages, std::uint32_t number) {
    if (const auto side = passages.side(number)) {
      directions.sides.emplace(id, *side);
    }
  });
  return directions;
}

std::vector<detection::CounterLineTrackable> LineCounter::onLine(const std::string& line) const {
  std::vector<detection::CounterLineTrackable> onLine;
  impl().forEachTrack(line, [&](std::int32_t id, const Passages& passages, std::uint32_t number) {
    if (passages.verdict(number) == CrossingVerdict::OnLine) {
      onLine.push_back({id, *passages.side(number)});
    }
  });
  return onLine;
}

CrossingExplanation LineCounter::explain(const std::string& line, std::int32_t id) const {
  return impl().explain(line, id);
}

std::size_t LineCounter::numTracks() const {
  return impl().numTracks();
}

}  // namespace orvantis::filter::monitor
