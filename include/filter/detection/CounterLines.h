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

/// The counter lines of a detector by name. Every operation is safe to call from many threads, `setLogger`
/// excepted; the settings store passed in belongs to the calling thread. Where an operation does not say what
/// it throws, that is std::bad_alloc, or std::system_error when the mutex cannot be locked.
class ORVANTIS_API CounterLines : public LoggedComponent {
 public:
  /// No lines. Throws nothing.
  CounterLines();
  ~CounterLines() override;

  /// Adds a copy of the line, or gives its points to the line of that name.
  /// @return true when it was added, false when a line of that name was updated
  /// @throws std::runtime_error when an update has no two points; nothing is changed then
  bool insert(const CounterLine& line);
  /// @return whether there was a line of that name
  bool erase(const std::string& name);
  /// @return whether there is a line of that name
  bool find(const std::string& name) const;
  /// A copy of all lines.
  std::map<std::string, CounterLine> clone() const;
  std::size_t size() const;

  /// Replaces the lines by those of the child "CounterLines" at the current path; without one the lines stay.
  /// A repeated name is a warning and the later points win. A line that cannot be read is logged as an error
  /// and ends the list there; nothing is thrown.
  void load(SettingsManager& settings);
  /// Stores the lines in ascending order of their names as child "CounterLines" at the current path, in place
  /// of what was there. A line with a coordinate that is not finite is one that `load` ends at.
  void save(SettingsManager& settings) const;

 private:
  bool insert_(const CounterLine& line);

  mutable std::mutex mutex_;
  std::map<std::string, CounterLine> lines_;
};

// Records for a host that counts; the library fills none of them.

/// The objects counted on a line, by the side they ended up on. Each id stands once however often it crossed.
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
