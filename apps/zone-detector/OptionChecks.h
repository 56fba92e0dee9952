#pragma once

#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace orvantis::app {

// Rules for the values of options. What they say completes a sentence that begins with the option.

CLI::Validator aboveZero();
CLI::Validator notBelowZero();
CLI::Validator between(double low, double high);
CLI::Validator wholeBetween(int low, int high);
CLI::Validator oneOf(const std::vector<std::string>& words);

}  // namespace orvantis::app
