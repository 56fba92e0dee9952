#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace orvantis::filter::monitor {

/// Numbers the names of classes, so that each track stores a number instead of a text.
class ClassNames {
 public:
  std::uint32_t numberOf(const std::string& name) {
    const auto known = numbers_.find(name);
    if (known != numbers_.end()) {
      return known->second;
    }
    names_.push_back(name);  // first: if memory runs out below, no number is without a name
    return numbers_.emplace(name, static_cast<std::uint32_t>(names_.size() - 1)).first->second;
  }
  const std::string& nameOf(std::uint32_t number) const { return names_[number]; }

 private:
  std::map<std::string, std::uint32_t> numbers_;
  std::vector<std::string> names_;
};

}  // namespace orvantis::filter::monitor
