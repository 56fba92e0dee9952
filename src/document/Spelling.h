#pragma once

#include <span>
#include <string_view>

namespace orvantis::toolkit {

/// The word that was probably meant: the candidate that needs the fewest insertions, removals, replacements
/// and swaps of neighbours, ignoring letter case. Empty when no candidate is near.
std::string_view nearest(std::string_view word, std::span<const std::string_view> candidates);

}  // namespace orvantis::toolkit
