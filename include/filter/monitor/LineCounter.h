#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <core/Planar.h>
#include <filter/detection/CounterLine.h>
#include <filter/detection/CounterLines.h>
#include <filter/monitor/Stamp.h>
#include <filter/monitor/TrackedObject.h>
#include <orvantis/Api.h>

namespace orvantis::filter::monitor {

/// An object went over a line.
struct Crossing {
  std::string line;
  /// The side it came from, and the side it is on now; one is LEFT and the other RIGHT.
  detection::CounterLineDirectionType from = detection::CounterLineDirectionType::LEFT;
  detection::CounterLineDirectionType to = detection::CounterLineDirectionType::RIGHT;
  std::int32_t id = 0;
  std::string className;  ///< as seen when the crossing was accepted
  Stamp met{0};           ///< when its reference point met the line, interpolated between two sightings
  core::PlanarPoint where{0.0, 0.0};  ///< where its reference point met the line
  Stamp accepted{0};                  ///< the sighting that found it clear on the new side
};

/// Crossings by the side they led to.
struct CrossingCounts {
  std::uint64_t toLeft = 0;
  std::uint64_t toRight = 0;
};

/// What was counted on one line.
struct LineTally {
  std::string line;
  CrossingCounts crossings;                       ///< every crossing
  std::map<std::string, CrossingCounts> byClass;  ///< the same, by class name; empty name: not classified
  /// The tracks that crossed and are not forgotten.
  detection::CounterLineCounts ids;
};

/// What a line has to say about a track, after the last frame.
enum class CrossingVerdict : std::int32_t {
  NoSuchLine,    ///< the counter has no line of that name
  NoLength,      ///< the line's ends are the same point or not finite: it has no sides
  NoIdentity,    ///< the id is below zero
  NotSeen,       ///< there is no such track: never seen, or forgotten
  NeverClear,    ///< it has not been clear of the line on any side yet
  NotOver,       ///< it was clear on one side when it was first seen, and never left it
  OnLine,        ///< it was clear on one side and is not clear now: not decided
  TurnedBack,    ///< it came to the line and is clear on the same side again
  PassedBeside,  ///< it changed sides, but not over the segment
  Jumped,        ///< it was faster than the maximum speed: taken for another object, which begins anew
  Counted,       ///< it went over the line
  BeganOnLine,   ///< it was not clear when it was first seen, then clear on one side, which it never left: it
                 ///< is not known where it came from
};

/// The verdict as a sentence without a subject, such as "changed sides beside the line's ends". Empty for a
/// value that is none of these. Throws nothing.
ORVANTIS_API const char* describe(CrossingVerdict verdict);

/// Why a track did or did not count on a line.
struct CrossingExplanation {
  /// What happened last; a track that stays clear on its side keeps the verdict of how it got there.
  CrossingVerdict verdict = CrossingVerdict::NotSeen;
  /// The side on which the track was last clear, if it ever was.
  std::optional<detection::CounterLineDirectionType> side;
  /// Its last crossing of this line, if there was one.
  std::optional<Crossing> lastCrossing;
};

struct LineCounterOptions {
  /// A track whose last sighting is this old or older is forgotten; above zero.
  Duration forgetAfter = std::chrono::seconds(2);
  /// How far off the line an object must be to be clear of it, in the unit of the plan; 0 or more, and
  /// finite. Raise it for objects that are mere points, whose footprint gives no margin against jitter.
  double clearance = 0.0;
  /// In units of the plan per second; above zero. When a reference point moves faster between two sightings,
  /// the counter takes it that the id went over to another object, which begins anew.
  double maxSpeed = std::numeric_limits<double>::infinity();
};

/// Counts tracked objects that go over lines. The rules below are drawn in docs/monitor-crossing.svg.
///
/// A counter line is the *segment* between its two points. The *line* is the segment prolonged without end on
/// both sides; it divides the plan into LEFT and RIGHT, seen from the first point to the second. Sides are
/// decided by the exact sign of the cross product of the given coordinates, without the tolerance of
/// CounterLine::direction.
///
/// - *Clear*: a sighting is clear of the line on a side when all vertices of the footprint's outer ring and
///   the reference point (see `referencePoint`) lie strictly on that side, each at least the clearance off
///   the line. Touching the line is not clear.
/// - *Path*: the straight steps from each sighting's reference point to the next one's, however far apart.
/// - *Meet*: a step meets the line when one of its ends lies left of the line and the other does not. A
///   reference point exactly on the line counts as lying right of it. So a step that begins or ends on the
///   line meets it there once if its other end lies on the left, and does not meet it otherwise. The instant
///   is interpolated linearly between the stamps of the two sightings.
/// - *Pass over*: a step passes over the segment when the point where it meets the line belongs to the
///   segment. The ends of the segment belong to it.
///
/// An object counts when it was clear on one side, is clear on the other, and its path between these two
/// sightings passed over the segment more often towards the new side than back. The crossing's instant is
/// that of the last pass towards the new side. Each time the object is found clear, its passes are counted
/// from zero again.
///
/// So an object does not count when it touches the line and goes back, stands on the line, or jitters about
/// it without getting clear. An object that is seen before and after the line counts, however fast it is. An
/// object that goes round the ends does not count. If a sighting at which the object is not clear is left
/// out, no count changes, unless an end of the segment lies in the triangle of that reference point with the
/// one before and the one after it. If a sighting at which the object is clear is left out, counts may
/// change: the first and the last clear sighting on a side decide what lies between them. A line whose ends
/// are the same point, or not finite, counts nothing.
///
/// Objects with an id below zero are not counted. The next `update` or `advance` forgets the tracks whose
/// last sighting is `forgetAfter` old or older. If that `update` sees such a track again, the track begins
/// anew. Memory is bounded by the most tracks that were known at once and the class names ever counted,
/// however long the counter runs. The time of a frame depends on the objects in it, not on the tracks that
/// are out of sight.
///
/// Lines are counted independently of each other. A value: copies go on independently, and a counter that was
/// moved from goes on without lines. One thread at a time; const calls may run concurrently. Every operation
/// that is not noexcept may throw std::bad_alloc; each one says what else it throws.
class ORVANTIS_API LineCounter {
 public:
  /// @param lines as CounterLines::clone() gives them; the name of a line is its key in the map
  /// @throws std::invalid_argument for an option outside its range
  explicit LineCounter(const std::map<std::string, detection::CounterLine>& lines,
                       const LineCounterOptions& options = {});
  LineCounter(const LineCounter& other);
  LineCounter(LineCounter&& other) noexcept;
  LineCounter& operator=(const LineCounter& other);
  LineCounter& operator=(LineCounter&& other) noexcept;
  ~LineCounter();

  /// Takes the next frame. An object that cannot be placed (see `referencePoint`) counts as not seen.
  /// @return the crossings that this frame completed, in the order of the objects, each in the order of the
  ///   lines' names
  /// @throws std::invalid_argument, with both stamps in its text, for a stamp that is not later than the last
  ///   frame's or is earlier than the last one of `advance`; also, with the id in its text, for two objects
  ///   of one id. Nothing is changed then
  std::vector<Crossing> update(Stamp stamp, const std::vector<TrackedObject>& objects);

  /// Tells that no object was seen up to and including the stamp: forgets the tracks that are due then. The
  /// next frame may have the same stamp, and its result does not depend on whether this was called before.
  /// The same stamp as the last one changes nothing.
  /// @throws std::invalid_argument, with both stamps in its text, for a stamp that is earlier than the last
  ///   one of a frame or of this operation; nothing is changed then
  void advance(Stamp stamp);

  /// One for each line, in the order of their names. The reference holds until the counter is assigned to,
  /// moved from or destroyed.
  const std::vector<LineTally>& tallies() const;
  /// Sets all numbers back to zero; the tracks keep what is known of them.
  void resetTallies();

  /// The side on which each track was last clear of a line; empty for an unknown line.
  detection::CounterLineDirections directions(const std::string& line) const;
  /// The tracks that are not clear of a line now, with the side on which they last were clear, in ascending
  /// order of their ids, without those that never were clear. Empty for an unknown line.
  std::vector<detection::CounterLineTrackable> onLine(const std::string& line) const;

  /// Why the track did or did not count on the line, after the last frame. An unknown line or track has a
  /// verdict too.
  CrossingExplanation explain(const std::string& line, std::int32_t id) const;

  /// The number of tracks that are not forgotten.
  std::size_t numTracks() const;

 private:
  class Impl;

  const Impl& impl() const;
  Impl& impl();

  std::unique_ptr<Impl> impl_;
};

}  // namespace orvantis::filter::monitor
