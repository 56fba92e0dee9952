#include "monitor/Laps.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <ctime>

namespace orvantis::benchmarks {
namespace {

double cpuSeconds() {
  std::timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

}  // namespace

void race(const std::string& title, const std::vector<Contestant>& contestants, std::size_t parts, int laps) {
  std::vector<std::vector<double>> times(contestants.size());
  std::vector<std::vector<double>> ratios(contestants.size());
  for (int lap = 0; lap < laps; ++lap) {
    for (std::size_t i = 0; i < contestants.size(); ++i) {
      const double start = cpuSeconds();
      contestants[i].lap();
      times[i].push_back((cpuSeconds() - start) / static_cast<double>(parts));
      ratios[i].push_back(times[i].back() / times[0].back());
    }
  }
  std::printf("\n%s\n", title.c_str());
  for (std::size_t i = 0; i < contestants.size(); ++i) {
    std::printf("  %-34s %10.4f ms %9.3f x\n", contestants[i].name.c_str(), 1e3 * median(times[i]),
                median(ratios[i]));
  }
}

}  // namespace orvantis::benchmarks
