#include "ExtentOption.h"

#include <array>
#include <cmath>
#include <stdexcept>
#include <string>

#include <CLI/CLI.hpp>

#include "OptionChecks.h"
#include "text/Number.h"
#include "text/Text.h"

namespace orvantis::app {
namespace {

toolkit::PlanContent::Extent parse(const std::string& text) {
  std::array<double, 4> values{};
  const char* at = text.data();
  const char* const last = text.data() + text.size();
  bool isGood = true;
  for (std::size_t i = 0; i < values.size() && isGood; ++i) {
    const auto [end, error] = toolkit::readNumber(at, last, values[i]);
    const bool isLast = i + 1 == values.size();
    isGood = error == std::errc() && std::abs(values[i]) < 1e9 &&
             (isLast ? end == last : end != last && *end == ',');
    at = end + (isLast || !isGood ? 0 : 1);
  }
  if (!isGood || !(values[0] < values[2]) || !(values[1] < values[3])) {
    throw std::invalid_argument(
        "must be x0,y0,x1,y1 in metres with x0 below x1 and y0 below y1, each less than 1e9 off zero, not "
        "\"" +
        toolkit::printable(text) + "\"");
  }
  return {values[0], values[2], values[1], values[3]};
}

}  // namespace

void addExtentOption(CLI::App& command, std::optional<toolkit::PlanContent::Extent>& extent) {
  command
      .add_option("--extent",
                  "part of the plan to show: x0,y0,x1,y1 in metres; without it, all zones, lines and tracks")
      ->option_text("EXTENT")
      ->check(parsedBy(parse))
      ->each([&extent](const std::string& text) { extent = parse(text); });
}

}  // namespace orvantis::app
