#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <set>
#include <string>

#include <filter/detection/CounterLine.h>
#include <logging/LoggedComponent.h>
#include <orvantis/Api.h>

namespace orvantis {
class SettingsManager;
}

namespace orvantis::filter::detection {

/// The counter lines of a detector by name. Every operation but `setLogger` is safe to call from many
/// threads; the settings store passed in belongs to the calling thread. Every operation may throw
/// std::bad_alloc, and std::system_error when the mutex cannot be locked. Neither copied nor moved.
class ORVANTIS_API CounterLines : public LoggedComponent {
 public:
  /// No lines. Throws nothing.
  CounterLines();
  ~CounterLines() override;

  /// Adds a copy of the line, or gives its points to the line of that name.
  /// @return true when it was added, false when a line of that name was updated
  /// @throws std::runtime_error when a line of that name would be updated from one that was moved from, which
  ///   has no points; nothing is changed then
  bool insert(const CounterLine& line);
  /// @return whether there was a line of that name
  bool erase(const std::string& name);
  /// @return whether there is a line of that name
  bool find(const std::string& name) const;
  /// A copy of all lines.
  std::map<std::string, CounterLine> clone() const;
  std::size_t size() const;

  /// Replaces the lines by those of the child "CounterLines" at the current path; without that child the
  /// lines stay. A repeated name is logged as a warning, and its later points are kept. A line that cannot be
  /// read is logged as an error, and those after it are not read. Throws only when that error cannot be
  /// logged for want of memory.
  void load(SettingsManager& settings);
  /// Stores the lines in ascending order of their names as child "CounterLines" at the current path, in place
  /// of what was there. `load` cannot read a line with a coordinate that is not finite.
  void save(SettingsManager& settings) const;

 private:
  bool insert_(const CounterLine& line);

  mutable std::mutex mutex_;
  std::map<std::string, CounterLine> lines_;
};

// Records for a host that counts; the library fills none of them.

/// The objects counted on a line, by the side they ended up on. A set has an id once, however often the
/// object crossed.
struct CounterLineCounts {
  std::set<std::int32_t> left;   ///< ids that crossed to the left
  std::set<std::int32_t> right;  ///< ids that crossed to the right
};

/// The side on which each object was last seen clear of a line.
struct CounterLineDirections {
  std::map<std::int32_t, CounterLineDirectionType> sides;  ///< by object id
};

/// An object that is followed on a line.
struct CounterLineTrackable {
  std::int32_t id = 0;
  CounterLineDirectionType side =
      CounterLineDirectionType::LEFT;  ///< where it was last seen clear of the line
};

}  // namespace orvantis::filter::detection
