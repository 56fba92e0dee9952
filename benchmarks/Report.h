#pragma once

#include <string>

#include <benchmark/benchmark.h>

namespace orvantis::benchmarks {

/// Keeps the times of all repetitions, for the ratios at the end.
class Report : public benchmark::ConsoleReporter {
 public:
  Report();
  void ReportRuns(const std::vector<Run>& runs) override;
};

/// The report prints the ratio of the medians of two benchmarks at its end, if both ran.
void addRatio(const std::string& slower, const std::string& faster);
void printRatios();

}  // namespace orvantis::benchmarks
