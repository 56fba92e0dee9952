#include "OptionChecks.h"

#include <algorithm>
#include <cmath>

#include "text/Number.h"
#include "text/Text.h"

namespace orvantis::app {
namespace {

// A rule for numbers. It also refuses "nan" and "inf", which the parser accepts.
template <typename Rule>
CLI::Validator numberRule(const std::string& text, Rule rule) {
  return {[text, rule](std::string& word) {
            double value = 0.0;
            const char* const last = word.data() + word.size();
            const auto [end, error] = toolkit::readNumber(word.data(), last, value);
            const bool isNumber = error == std::errc() && end == last && std::isfinite(value);
            const std::string found = ", not \"" + toolkit::printable(word) + "\"";
            if (!isNumber) {
              return "must be a number" + found;
            }
            return rule(value) ? std::string() : text + found;
          },
          ""};
}

}  // namespace

CLI::Validator aboveZero() {
  return numberRule("must be above 0", [](double value) { return value > 0.0; });
}

CLI::Validator notBelowZero() {
  return numberRule("must be 0 or more", [](double value) { return value >= 0.0; });
}

CLI::Validator between(double low, double high) {
  return numberRule("must be between " + toolkit::toText(low) + " and " + toolkit::toText(high),
                    [low, high](double value) { return low <= value && value <= high; });
}

CLI::Validator wholeBetween(int low, int high) {
  return numberRule(
      "must be a whole number between " + std::to_string(low) + " and " + std::to_string(high),
      [low, high](double value) { return value == std::floor(value) && low <= value && value <= high; });
}

CLI::Validator oneOf(const std::vector<std::string>& words) {
  return {[words](std::string& word) {
            if (std::find(words.begin(), words.end(), word) != words.end()) {
              return std::string();
            }
            std::string allowed;
            for (const std::string& candidate : words) {
              allowed += (allowed.empty() ? "" : " or ") + candidate;
            }
            return "must be " + allowed + ", not \"" + toolkit::printable(word) + "\"";
          },
          ""};
}

}  // namespace orvantis::app
