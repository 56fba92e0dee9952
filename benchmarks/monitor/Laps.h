#pragma once

#include <functional>
#include <string>
#include <vector>

namespace orvantis::benchmarks {

/// One way to do the work of a group.
struct Contestant {
  std::string name;
  std::function<void()> lap;
};

/// Runs the contestants lap by lap in turn, so that other work of the machine slows all of them. Prints the
/// median of the CPU times of each, and the median of the ratios to the first contestant in the same lap.
/// @param parts how many parts a lap has, such as frames; the times are for one part
void race(const std::string& title, const std::vector<Contestant>& contestants, std::size_t parts, int laps);

}  // namespace orvantis::benchmarks
