#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

#include "Check.h"
#include "document/Finding.h"

namespace orvantis::fuzz {

/// Every finding says something, and stands inside of the text.
inline void checkFindings(const std::vector<toolkit::Finding>& findings, std::string_view text) {
  const auto lines = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + 1;
  for (const toolkit::Finding& finding : findings) {
    ORVANTIS_FUZZ_CHECK(!finding.text.empty());
    ORVANTIS_FUZZ_CHECK(finding.at.line <= lines);
    ORVANTIS_FUZZ_CHECK(finding.at.column <= text.size() + 1);
  }
}

}  // namespace orvantis::fuzz
