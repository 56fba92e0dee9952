#pragma once

#include <functional>
#include <string>
#include <vector>

namespace orvantis::benchmarks {

/// One way to do what all of a group do.
struct Contestant {
  std::string name;
  std::function<void()> lap;
};

/// Lets the contestants run lap by lap in turn, so that whatever else the machine does falls on all of them,
/// and prints for each the median of its CPU times and of its ratios to the first one, lap against lap.
/// @param parts of a lap, such as frames: the times are those of one
void race(const std::string& title, const std::vector<Contestant>& contestants, std::size_t parts, int laps);

}  // namespace orvantis::benchmarks
