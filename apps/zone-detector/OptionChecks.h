#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace orvantis::app {

// Rules for the values of options. Their texts complete a sentence that begins with the name of the option.

CLI::Validator aboveZero();
CLI::Validator notBelowZero();
CLI::Validator between(double low, double high);
CLI::Validator wholeBetween(int low, int high);
/// A rule that accepts what `read` accepts, and gives the text of the std::invalid_argument that `read`
/// throws.
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
