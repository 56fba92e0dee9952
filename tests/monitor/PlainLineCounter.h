#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <core/Planar.h>
#include <filter/detection/CounterLine.h>
#include <filter/monitor/LineCounter.h>

/// The rules of LineCounter as they are written down: every line asks for every vertex of every object, by
/// exact signs, and keeps an account for every track. Slow, and what the quick one is compared with.
namespace orvantis::filter::monitor::testing {

class PlainLineCounter {
 public:
  PlainLineCounter(const std::map<std::string, detection::CounterLine>& lines,
                   const LineCounterOptions& options);

  std::vector<Crossing> update(Stamp stamp, const std::vector<TrackedObject>& objects);
  CrossingExplanation explain(const std::string& name, std::int32_t id) const;

 private:
  using Side = detection::CounterLineDirectionType;

  struct Line {
    std::string name;
    core::PlanarPoint first;
    core::PlanarPoint second;
    double clearance;
  };
  struct Instant {
    Stamp stamp{0};
    core::PlanarPoint place{0.0, 0.0};
  };
  struct Passage {
    CrossingVerdict verdict = CrossingVerdict::NeverClear;
    std::optional<Side> side;
    int balance = 0;
    Instant lastAway;
    std::optional<Crossing> lastCrossing;
  };
  struct Track {
    Instant last;
    std::vector<Passage> passages;  // one for each line
  };

  void follow(const TrackedObject& object, const Instant& now, std::vector<Crossing>& crossings);
  static std::optional<Side> clearSide(const Line& line, const TrackedObject& object,
                                       const core::PlanarPoint& reference);
  static void takeStep(const Line& line, const Instant& from, const Instant& to, Passage& passage);
  static bool takeSide(const std::optional<Side>& side, bool isFirst, Passage& passage);

  std::vector<Line> lines_;
  LineCounterOptions options_;
  std::map<std::int32_t, Track> tracks_;
};

}  // namespace orvantis::filter::monitor::testing
