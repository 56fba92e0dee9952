#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <filter/classify/PointClassifier.h>
#include <filter/detection/ZoneDetector.h>
#include <filter/monitor/SensorPoints.h>
#include <filter/monitor/Stamp.h>
#include <filter/monitor/ZoneSlot.h>
#include <orvantis/Api.h>

namespace orvantis::filter::monitor {

class ZoneTable;
struct ZoneTally;

/// A zone's reported state changed.
struct ZoneEvent {
  ZoneSlot slot;
  bool isOccupied = false;  ///< the new state: occupied or cleared
  Stamp began{0};           ///< the first of the frames in a row that said so
  Stamp accepted{0};        ///< the frame that completed the debounce time
};

/// What one frame of points means for the zones.
struct PointFrame {
  using Level = detection::ZoneDetector::TriggerZoneValue;

  Stamp stamp{0};
  /// Points inside each zone and outside every exclusion zone, by slot index.
  std::array<std::uint64_t, NUM_ZONE_SLOTS> counts{};
  std::uint64_t excluded = 0;   ///< points inside an exclusion zone
  std::uint64_t noReturns = 0;  ///< points with a coordinate that is not finite
  /// Whether this frame alone says that the zone is occupied.
  std::array<bool, NUM_ZONE_SLOTS> isOccupiedNow{};
  /// The reported state, after debouncing.
  std::array<bool, NUM_ZONE_SLOTS> isOccupied{};
  int activeField = 0;
  /// The level of each output: one for each zone of the active field.
  std::array<Level, detection::ZoneDetector::NUM_ZONES_PER_EVAL_FIELD> outputs{};
  std::vector<ZoneEvent> events;  ///< in the order of the slots
};

/// Points that an exclusion zone takes from a zone.
struct ExclusionShare {
  std::size_t exclusionZone = 0;  ///< its number in the detector's list
  std::string zoneName;
  std::uint64_t points = 0;
};

/// Why a zone is in the state it is in.
struct ZoneExplanation {
  ZoneSlot slot;
  std::uint64_t counted = 0;  ///< points inside the zone and outside every exclusion zone
  int minPoints = 0;          ///< the zone is occupied from this count on
  std::uint64_t taken = 0;    ///< points inside the zone and inside an exclusion zone, which do not count
  /// The exclusion zones that took them. A point inside several of them is counted for each, so these may add
  /// up to more than `taken`.
  std::vector<ExclusionShare> takenBy;
  bool isOccupiedNow = false;  ///< what the last frame alone said
  bool isOccupied = false;     ///< the reported state
  /// Empty while the two agree. While they differ: the frame since which they do, and how much longer they
  /// must differ until the reported state changes.
  std::optional<Stamp> differsSince;
  std::optional<Duration> missing;
};

/// Turns frames of points into zone states and outputs.
///
/// Works on a snapshot of a detector: later changes of the detector do not reach it.
///
/// A zone is occupied in a frame when at least the detector's minimum number of points are inside it and
/// outside every exclusion zone; with a minimum of 0 or less it always is. Its reported state is cleared at
/// first. It changes when all frames since some stamp differ from it and the present frame is at least the
/// debounce time later than that stamp; with a debounce time of 0 or less it changes at once. The time is
/// measured between stamps, for both changes alike. One frame that agrees with the reported state starts the
/// time over. An empty slot, and a zone without a shape, is never occupied.
///
/// A host may bind zones to sensors: it puts a `Zone3dTarsel` into a slot or among the exclusion zones. When
/// frames come by sensor, a bound zone counts (or, as an exclusion zone, takes) only the points of the
/// sensors that it names; when it names none, the points of every sensor; while it is not enabled, no points.
/// Any other zone counts the points of every sensor. When frames come without sensors, every zone counts
/// every point. A detector that was assigned to has plain zones only.
///
/// The monitor follows all fields all the time; the outputs show the active field. Memory does not grow with
/// the number of frames. A value: copies go on independently. One thread at a time; const calls may run
/// concurrently. Every operation may throw std::bad_alloc, and what a host's own shape throws; each one says
/// what else it throws.
class ORVANTIS_API ZoneMonitor {
 public:
  /// The active field is the detector's evaluation field index.
  /// @throws std::out_of_range when that index is above 7; std::invalid_argument for more than 32 exclusion
  ///   zones and, with the name of the zone in its text, for a shape whose `makeCopy` gives null
  explicit ZoneMonitor(const detection::ZoneDetector& detector);
  // A move is a copy, which costs little: so a monitor that was moved from still works.
  ZoneMonitor(const ZoneMonitor&) = default;
  ZoneMonitor& operator=(const ZoneMonitor&) = default;
  ~ZoneMonitor() = default;

  /// Goes on with another detector: its zones, options and evaluation field index.
  ///
  /// A zone keeps its state, a running debounce included, when the slot holds the same zone as before: the
  /// same type of shape with the same geometry and heights, bit by bit. Its name and its sensors may differ,
  /// and so may the exclusion zones. Any other zone starts cleared.
  /// @return the zones that were reported occupied and lose their state, as events at the last frame's stamp
  /// @throws as the constructor; nothing is changed then
  std::vector<ZoneEvent> reconfigure(const detection::ZoneDetector& detector);

  /// The field whose zones drive the outputs, from the next frame on.
  /// @throws std::out_of_range unless 0 to 7; nothing is changed then
  void setActiveField(int field);
  /// Throws nothing.
  int activeField() const { return activeField_; }

  /// Takes the next frame. Whatever it throws, nothing is changed then.
  /// @throws std::invalid_argument, with both stamps in its text, unless the stamp is later than that of the
  ///   last frame
  PointFrame update(Stamp stamp, const classify::PointsView<float>& points);
  PointFrame update(Stamp stamp, const classify::PointsView<double>& points);
  /// The same for the points of several sensors, which make one frame. A sensor may have more than one entry.
  PointFrame update(Stamp stamp, const std::vector<SensorPoints>& sensors);
  /// The same for a frame whose points were counted before: a recording is looked at again with another
  /// debounce time or other minimum points, without its points.
  /// @param counts as a `PointClassifier` of the same zones gives them
  PointFrame update(Stamp stamp, const classify::ZoneCounts& counts);

  /// Explains the last frame: one entry for each zone that has a shape, in the order of the slots.
  /// @param points those that the last `update` was given; the monitor keeps no points
  std::vector<ZoneExplanation> explain(const classify::PointsView<float>& points) const;
  std::vector<ZoneExplanation> explain(const classify::PointsView<double>& points) const;
  std::vector<ZoneExplanation> explain(const std::vector<SensorPoints>& sensors) const;

 private:
  struct ZoneState {
    bool isOccupied = false;
    std::optional<Stamp>
        differsSince;  // the first of the frames in a row that differ from the reported state
  };
  using ZoneStates = std::array<ZoneState, NUM_ZONE_SLOTS>;

  PointFrame follow(Stamp stamp, const classify::ZoneCounts& counted);
  std::vector<ZoneExplanation> explanationsOf(const std::array<ZoneTally, NUM_ZONE_SLOTS>& tallies) const;

  std::shared_ptr<const ZoneTable> table_;
  classify::PointClassifier classifier_;
  int minPoints_;
  Duration debounceTime_;
  PointFrame::Level triggerLevel_;
  int activeField_;
  ZoneStates states_;
  std::optional<Stamp> lastStamp_;
};

}  // namespace orvantis::filter::monitor
