#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace orvantis::app {

// Rules for the values of options. What they say completes a sentence that begins with the option.

CLI::Validator aboveZero();
CLI::Validator notBelowZero();
CLI::Validator between(double low, double high);
CLI::Validator wholeBetween(int low, int high);
/// What a function reads without throwing std::invalid_argument.
template <typename Read>
CLI::Validator parsedBy(Read read) {
  return {[read](std::string& word) {
            try {
              read(word);
            } catch (const std::invalid_argument& error) {
              return std::string(error.what());
            }
            return std::string();
          },
          ""};
}

CLI::Validator oneOf(const std::vector<std::string>& words);

}  // namespace orvantis::app
