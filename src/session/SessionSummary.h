#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "document/FieldZones.h"
#include "session/Durations.h"
#include "session/Session.h"

namespace orvantis::toolkit {

/// Which kinds of input a session has. Results that need a kind are left out without it.
struct SessionInputs {
  bool points = false;
  bool objects = false;
};

/// The summary of a zone. Durations are measured between stamps.
struct ZoneSummary {
  filter::monitor::Duration occupied{0};  ///< from a frame that reports it occupied to the next frame
  std::uint64_t activations = 0;          ///< how often it became occupied
  std::uint64_t peakPoints = 0;
  std::uint64_t peakObjects = 0;
  std::uint64_t visits = 0;  ///< how often a track entered
  /// Of all visits. A visit that lasts to the end counts with the time until its last sighting.
  std::optional<filter::monitor::Duration> medianDwell;
  std::optional<filter::monitor::Duration> longestDwell;
};

/// Crossings to the left minus crossings to the right.
std::int64_t netToLeft(const filter::monitor::CrossingCounts& counts);

/// Summarises the frames of a session. Memory does not grow with their number.
class SessionSummary {
 public:
  void add(const SessionFrame& frame);

  ZoneSummary of(const FieldZone& zone, const filter::monitor::ObjectMonitor& objects) const;

  /// The summary of a zone that is bound to sensors, which has no values about objects.
  const ZoneSummary& ofSensorZone(std::size_t zone) const { return sensorZones_.zones.at(zone); }

  std::uint64_t pointFrames() const { return pointFrames_; }
  std::uint64_t objectFrames() const { return objectFrames_; }
  /// The first and the last stamp; nothing when there was no frame.
  std::optional<filter::monitor::Stamp> begin() const { return begin_; }
  std::optional<filter::monitor::Stamp> end() const { return end_; }
  /// The time that the monitors took for each frame.
  const Durations& taken() const { return taken_; }

 private:
  // The history of the zones of one monitor, in the order of its slots.
  struct ZoneHistory {
    void add(const filter::monitor::PointFrame& frame);

    std::array<ZoneSummary, filter::monitor::NUM_ZONE_SLOTS> zones;
    std::array<bool, filter::monitor::NUM_ZONE_SLOTS> wasOccupied{};
    std::optional<filter::monitor::Stamp> last;
  };

  void addObjects(const filter::monitor::ObjectFrame& frame);
  void addVisits(const std::vector<filter::monitor::ObjectEvent>& events);

  ZoneHistory zones_;  // without the values about visits
  ZoneHistory sensorZones_;
  std::array<Durations, filter::monitor::NUM_ZONE_SLOTS> dwells_;
  std::uint64_t pointFrames_ = 0;
  std::uint64_t objectFrames_ = 0;
  std::optional<filter::monitor::Stamp> begin_;
  std::optional<filter::monitor::Stamp> end_;
  Durations taken_;
};

}  // namespace orvantis::toolkit
