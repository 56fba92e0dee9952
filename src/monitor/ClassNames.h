#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace orvantis::filter::monitor {

/// The names of classes by number, so that what is kept of each track holds a number instead of a text.
class ClassNames {
 public:
  std::uint32_t numberOf(const std::string& name) {
    const auto [entry, isNew] = numbers_.try_emplace(name, static_cast<std::uint32_t>(names_.size()));
    if (isNew) {
      names_.push_back(name);
    }
    return entry->second;
  }
  const std::string& nameOf(std::uint32_t number) const { return names_[number]; }

 private:
  std::map<std::string, std::uint32_t> numbers_;
  std::vector<std::string> names_;
};

}  // namespace orvantis::filter::monitor
