#pragma once

#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

namespace orvantis::filter::classify {

/// Gives each set of zones a code, in the order in which they come.
class Palette {
 public:
  std::uint32_t codeOf(std::uint64_t set) {
    // Neighbouring cells mostly have the same one.
    if (last_ && sets_[*last_] == set) {
      return *last_;
    }
    const auto [entry, isNew] = codes_.try_emplace(set, static_cast<std::uint32_t>(sets_.size()));
    if (isNew) {
      sets_.push_back(set);
    }
    last_ = entry->second;
    return entry->second;
  }

  const std::vector<std::uint64_t>& sets() const { return sets_; }

 private:
  std::vector<std::uint64_t> sets_;
  std::unordered_map<std::uint64_t, std::uint32_t> codes_;
  std::optional<std::uint32_t> last_;
};

}  // namespace orvantis::filter::classify
