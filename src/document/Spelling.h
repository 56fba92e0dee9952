#pragma once

#include <span>
#include <string_view>

namespace orvantis::toolkit {

/// The word that was likely meant: the one that the fewest insertions, removals, replacements and swaps of
/// neighbours turn the given word into, letter case aside. Empty when none is near.
std::string_view nearest(std::string_view word, std::span<const std::string_view> candidates);

}  // namespace orvantis::toolkit
