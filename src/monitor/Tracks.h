#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <utility>
#include <vector>

#include <filter/monitor/Stamp.h>

#include "monitor/Stamps.h"

namespace orvantis::filter::monitor {

/// What is known of each track that is not forgotten.
///
/// The tracks form a list in the order of their last sightings. So a frame costs no time for tracks that it
/// does not see and that are not due to be forgotten. Memory is that of the most tracks there ever were at
/// once. A value.
template <typename Track>
class Tracks {
 public:
  std::size_t size() const { return slotById_.size(); }

  struct Sighting {
    Track& track;
    bool isFirst;
  };

  /// Null when there is no such track.
  const Track* find(std::int32_t id) const {
    const auto found = slotById_.find(id);
    return found != slotById_.end() ? &slots_[found->second].track : nullptr;
  }

  /// Notes that the track is seen, and makes it if it is new.
  /// @param id    zero or above
  /// @param stamp not earlier than any before
  /// @param make  gives a new track; when it throws, nothing is changed
  template <typename Make>
  Sighting see(std::int32_t id, Stamp stamp, const Make& make) {
    std::uint32_t slot = slotOf(id);
    const bool isFirst = slot == none;
    if (isFirst) {
      slot = add(id, make());
    } else {
      expected_ = slots_[slot].next;
      detach(slot);
    }
    slots_[slot].lastSeen = stamp;
    append(slot);
    return {slots_[slot].track, isFirst};
  }

  /// Forgets the tracks whose last sighting is `age` old or older.
  /// @param visit is called before with id, track and last sighting of each, in ascending order of the ids
  template <typename Visit>
  void forget(Stamp now, Duration age, const Visit& visit) {
    std::vector<std::uint32_t> due;
    for (std::uint32_t slot = first_; slot != none && elapsed(slots_[slot].lastSeen, now) >= age;
         slot = slots_[slot].next) {
      due.push_back(slot);
    }
    std::sort(due.begin(), due.end(),
              [&](std::uint32_t a, std::uint32_t b) { return slots_[a].id < slots_[b].id; });
    for (const std::uint32_t slot : due) {
      visit(slots_[slot].id, static_cast<const Track&>(slots_[slot].track), slots_[slot].lastSeen);
      remove(slot);
    }
  }

  /// Calls back with id, track and last sighting of each, in ascending order of the ids.
  template <typename Visit>
  void forEach(const Visit& visit) const {
    for (const auto& [id, slot] : slotById_) {
      visit(id, slots_[slot].track, slots_[slot].lastSeen);
    }
  }
  template <typename Visit>
  void forEach(const Visit& visit) {
    for (const auto& [id, slot] : slotById_) {
      visit(id, slots_[slot].track, slots_[slot].lastSeen);
    }
  }

 private:
  static constexpr std::uint32_t none = std::numeric_limits<std::uint32_t>::max();
  static constexpr std::int32_t noId = -1;

  struct Slot {
    std::int32_t id = noId;
    std::uint32_t previous = none;  // seen before
    std::uint32_t next = none;      // seen after
    Stamp lastSeen{0};
    Track track{};
  };

  std::uint32_t slotOf(std::int32_t id) const {
    // Most trackers give their objects in the same order in every frame. So the next track is likely to be
    // the one that came next in the frame before.
    if (expected_ != none && slots_[expected_].id == id) {
      return expected_;
    }
    const auto found = slotById_.find(id);
    return found != slotById_.end() ? found->second : none;
  }

  std::uint32_t add(std::int32_t id, Track track) {
    if (free_.empty()) {
      slots_.emplace_back();
      free_.reserve(slots_.capacity());  // so that forgetting needs no memory
      free_.push_back(static_cast<std::uint32_t>(slots_.size() - 1));
    }
    const std::uint32_t slot = free_.back();
    slotById_.emplace(id, slot);
    free_.pop_back();
    slots_[slot].id = id;
    slots_[slot].track = std::move(track);
    return slot;
  }

  void remove(std::uint32_t slot) {
    detach(slot);
    slotById_.erase(slots_[slot].id);
    slots_[slot] = Slot{};
    free_.push_back(slot);
  }

  void detach(std::uint32_t slot) {
    const auto [previous, next] = std::pair(slots_[slot].previous, slots_[slot].next);
    (previous != none ? slots_[previous].next : first_) = next;
    (next != none ? slots_[next].previous : last_) = previous;
  }

  void append(std::uint32_t slot) {
    slots_[slot].previous = last_;
    slots_[slot].next = none;
    (last_ != none ? slots_[last_].next : first_) = slot;
    last_ = slot;
  }

  std::vector<Slot> slots_;
  std::vector<std::uint32_t> free_;
  std::map<std::int32_t, std::uint32_t> slotById_;
  std::uint32_t first_ = none;     // the longest out of sight
  std::uint32_t last_ = none;      // the last one seen
  std::uint32_t expected_ = none;  // in the frame before, it came after the track that was seen last
};

}  // namespace orvantis::filter::monitor
