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
    const auto known = numbers_.find(name);
    if (known != numbers_.end()) {
      return known->second;
    }
    names_.push_back(name);  // first, so that there is no number without a name where memory runs out
    return numbers_.emplace(name, static_cast<std::uint32_t>(names_.size() - 1)).first->second;
  }
  const std::string& nameOf(std::uint32_t number) const { return names_[number]; }

 private:
  std::map<std::string, std::uint32_t> numbers_;
  std::vector<std::string> names_;
};

}  // namespace orvantis::filter::monitor
