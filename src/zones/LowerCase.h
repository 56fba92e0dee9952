#pragma once

#include <string>

namespace orvantis::filter::detection {

/// The text in lower case, A to Z only: the words of configuration files do not depend on the process locale.
std::string toLower(std::string text);

}  // namespace orvantis::filter::detection
