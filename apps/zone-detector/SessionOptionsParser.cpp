#include "SessionOptionsParser.h"

#include <chrono>
#include <cmath>

#include <CLI/CLI.hpp>

#include "OptionChecks.h"
#include "document/Configuration.h"

namespace orvantis::app {

void addSessionOptions(CLI::App& command, toolkit::SessionOptions& options) {
  command
      .add_option("--clearance", options.lines.clearance,
                  "metres from a counter line from which on an object is clear of it; 0 unless given")
      ->option_text("M")
      ->check(notBelowZero());
  command
      .add_option("--max-speed", options.lines.maxSpeed,
                  "metres per second; a track that moves faster is taken for another object")
      ->option_text("M/S")
      ->check(aboveZero());
  constexpr double nanosecond = 1e-9;
  command
      .add_option_function<double>(
          "--forget-after",
          [&options](double seconds) {
            options.forgetAfter = filter::monitor::Duration(std::llround(seconds / nanosecond));
          },
          "seconds without a sighting after which a track is forgotten; 2 unless given")
      ->option_text("S")
      ->check(between(nanosecond, 4.6e9));
  command
      .add_option("--field", options.activeField, "evaluation field that drives the outputs; 0 unless given")
      ->option_text("N")
      ->check(wholeBetween(0, filter::detection::ZoneDetector::NUM_EVAL_FIELDS - 1));
}

}  // namespace orvantis::app
