#include "Report.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <utility>
#include <vector>

#include <unistd.h>

namespace orvantis::benchmarks {
namespace {

std::map<std::string, std::vector<double>> nanoseconds;
std::vector<std::pair<std::string, std::string>> ratios;

double medianOf(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

}  // namespace

// Colours only on a terminal, because a file would get their codes.
Report::Report() : ConsoleReporter(isatty(STDOUT_FILENO) != 0 ? OO_Defaults : OO_Tabular) {}

void Report::ReportRuns(const std::vector<Run>& runs) {
  ConsoleReporter::ReportRuns(runs);
  for (const Run& run : runs) {
    const auto rate = run.counters.find("points");
    if (!run.error_occurred && run.run_type == Run::RT_Iteration && rate != run.counters.end()) {
      nanoseconds[run.run_name.function_name].push_back(1.0e9 / rate->second.value);
    }
  }
}

void addRatio(const std::string& slower, const std::string& faster) {
  ratios.emplace_back(slower, faster);
}

void printRatios() {
  std::printf("\nRatios of the medians above, and their nanoseconds a point\n");
  for (const auto& [slower, faster] : ratios) {
    const auto a = nanoseconds.find(slower);
    const auto b = nanoseconds.find(faster);
    if (a != nanoseconds.end() && b != nanoseconds.end()) {
      const double slow = medianOf(a->second);
      const double fast = medianOf(b->second);
      std::printf("%-40s / %-40s %9.2f  %9.2f / %.2f\n", slower.c_str(), faster.c_str(), slow / fast, slow,
                  fast);
    }
  }
}

}  // namespace orvantis::benchmarks
