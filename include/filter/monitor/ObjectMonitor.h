#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <filter/detection/ZoneDetector.h>
#include <filter/monitor/Stamp.h>
#include <filter/monitor/TrackedObject.h>
#include <filter/monitor/ZoneSlot.h>
#include <orvantis/Api.h>

namespace orvantis::filter::monitor {

/// A track entered a zone or left it.
struct ObjectEvent {
  enum class Kind : std::int32_t {
    Entered,  ///< seen inside after it was seen outside, or for the first time
    Left,     ///< seen outside
    Lost,     ///< left without being seen outside: it was forgotten, or the zone was changed or removed
  };

  Kind kind = Kind::Entered;
  ZoneSlot slot;
  std::int32_t id = 0;
  std::string className;  ///< as last seen
  /// Entered: the frame that saw it inside. Left: the frame that saw it outside. Lost: the last frame that
  /// saw the track, or at a change of the zones the last frame of all.
  Stamp stamp{0};
  Duration dwell{0};  ///< from the entering stamp to this one
};

/// Where the objects of one frame are.
struct ObjectFrame {
  Stamp stamp{0};
  /// For each object, in the order given, the zones it is in: bit zoneSlotIndex(field, zone).
  std::vector<std::uint32_t> zones;
  /// The number inside each zone, by slot index: tracks that entered and have not left, and the objects
  /// without identity that are inside in this frame.
  std::array<std::size_t, NUM_ZONE_SLOTS> inside{};
  /// First the tracks that were lost, in ascending order of the ids; then what the objects did, in the order
  /// given.
  std::vector<ObjectEvent> events;
};

/// A track that is in a zone.
struct Occupant {
  std::int32_t id = 0;
  std::string className;
  Stamp entered{0};
  Stamp lastSeen{0};
};

/// Follows tracked objects through the zones of a detector's evaluation fields.
///
/// Works on a snapshot of a detector: later changes of the detector do not reach it. Exclusion zones take
/// points, not objects; the monitor ignores them.
///
/// An object is in a zone when the height ranges touch, bounds included, and the footprint and the zone's
/// shape share any point, borders included. A range whose lower end is above its upper one, or not a number,
/// touches nothing. One shape wholly inside the other counts, for sectors too. A sector's border belongs to
/// it as Sector::within says; what a footprint's edge merely grazes there is decided by rounding.
///
/// A track that is out of sight keeps its zones until it is forgotten. The next `update` or `advance` forgets
/// the tracks whose last sighting is `forgetAfter` old or older. If that `update` sees such a track again,
/// the track begins anew. So memory is bounded by the most tracks that were known at once, however long the
/// monitor runs, and the time of a frame depends on the objects in it, not on the tracks that are out of
/// sight.
///
/// A value: copies go on independently, and a monitor that was moved from goes on without zones. One thread
/// at a time; const calls may run concurrently. Every operation that is not noexcept may throw
/// std::bad_alloc, and what a host's own shape throws; each one says what else it throws.
class ORVANTIS_API ObjectMonitor {
 public:
  static constexpr Duration DEFAULT_FORGET_AFTER = std::chrono::seconds(2);

  /// @throws std::invalid_argument unless `forgetAfter` is above zero; also, with the name of the zone in its
  ///   text, for a shape whose `makeCopy` gives null
  explicit ObjectMonitor(const detection::ZoneDetector& detector,
                         Duration forgetAfter = DEFAULT_FORGET_AFTER);
  ObjectMonitor(const ObjectMonitor& other);
  ObjectMonitor(ObjectMonitor&& other) noexcept;
  ObjectMonitor& operator=(const ObjectMonitor& other);
  ObjectMonitor& operator=(ObjectMonitor&& other) noexcept;
  ~ObjectMonitor();

  /// Goes on with the zones of another detector. Tracks stay in a zone that is the same as before by the rule
  /// of ZoneMonitor::reconfigure; for any other zone every track starts outside.
  /// @return the tracks that were in a zone that is not the same, lost at the last frame's stamp
  /// @throws std::invalid_argument for a shape whose `makeCopy` gives null; nothing is changed then
  std::vector<ObjectEvent> reconfigure(const detection::ZoneDetector& detector);

  /// Takes the next frame. An object that cannot be placed (see `referencePoint`) counts as not seen.
  /// @throws std::invalid_argument, with both stamps in its text, for a stamp that is not later than the last
  ///   frame's or is earlier than the last one of `advance`; also, with the id in its text, for two objects
  ///   of one id. Nothing is changed then
  ObjectFrame update(Stamp stamp, const std::vector<TrackedObject>& objects);

  /// Tells that no object was seen up to and including the stamp: forgets the tracks that are due then. The
  /// next frame may have the same stamp. The call changes when an event is reported, but not which events
  /// there are. The same stamp as the last one changes nothing.
  /// @return the events of the tracks that were lost, in ascending order of the ids
  /// @throws std::invalid_argument, with both stamps in its text, for a stamp that is earlier than the last
  ///   one of a frame or of this operation; nothing is changed then
  std::vector<ObjectEvent> advance(Stamp stamp);

  /// The tracks in a zone, in ascending order of their ids.
  /// @throws std::out_of_range unless the field is 0 to 7 and the zone 0 to 2
  std::vector<Occupant> occupants(int field, int zone) const;

  /// The number of tracks that are not forgotten.
  std::size_t numTracks() const;

 private:
  class Impl;

  const Impl& impl() const;
  Impl& impl();

  std::unique_ptr<Impl> impl_;
};

}  // namespace orvantis::filter::monitor
