#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace orvantis::filter::classify {

/// Gives each set of zones a code, in the order in which the sets are first seen.
class Palette {
 public:
  std::uint32_t codeOf(std::uint64_t set) {
    std::size_t place = placeOf(set);
    if (places_[place].code == none) {
      if (2 * sets_.size() >= places_.size()) {
        grow();
        place = placeOf(set);
      }
      places_[place] = {set, static_cast<std::uint32_t>(sets_.size())};
      sets_.push_back(set);
    }
    return places_[place].code;
  }

  const std::vector<std::uint64_t>& sets() const { return sets_; }

 private:
  static constexpr std::uint32_t none = ~std::uint32_t{0};

  // A set beside its code, so that a look-up reads one place in memory.
  struct Place {
    std::uint64_t set = 0;
    std::uint32_t code = none;
  };

  // The place of a set, or a free place for it.
  std::size_t placeOf(std::uint64_t set) const {
    constexpr std::uint64_t golden = 0x9E3779B97F4A7C15U;
    const std::size_t mask = places_.size() - 1;
    std::size_t place = static_cast<std::size_t>(set * golden >> 32U) & mask;
    while (places_[place].code != none && places_[place].set != set) {
      place = (place + 1) & mask;
    }
    return place;
  }

  void grow() {
    places_.assign(2 * places_.size(), Place());
    for (std::size_t code = 0; code < sets_.size(); ++code) {
      places_[placeOf(sets_[code])] = {sets_[code], static_cast<std::uint32_t>(code)};
    }
  }

  std::vector<std::uint64_t> sets_;
  std::vector<Place> places_ = std::vector<Place>(1024);
};

}  // namespace orvantis::filter::classify
