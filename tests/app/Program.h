#pragma once

#include <string>
#include <vector>

namespace orvantis::testing {

/// How a program ended and what it wrote.
struct Outcome {
  int code = -1;  ///< -1: ended by a signal
  std::string out;
  std::string err;
};

/// Runs a program to its end.
/// @param folder where it runs
/// @param outputPath takes its standard output in place of `Outcome::out`; empty: none
Outcome runProgram(const std::string& program, const std::vector<std::string>& arguments,
                   const std::string& folder = ".", const std::string& outputPath = "");

/// Runs the command under test.
inline Outcome zoneDetector(const std::vector<std::string>& arguments, const std::string& folder = ".",
                            const std::string& outputPath = "") {
  return runProgram(ZONE_DETECTOR, arguments, folder, outputPath);
}

}  // namespace orvantis::testing
