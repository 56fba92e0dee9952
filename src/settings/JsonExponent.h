#pragma once

#include <cstddef>
#include <string_view>

namespace orvantis::json {

/// A part of a text, from `begin` up to `end`.
struct Part {
  std::size_t begin;
  std::size_t end;
};

/// The digits of an exponent beyond its first nine, at or after `from`; both ends are the text's when there
/// are none. What it finds may also stand in a string.
///
/// Boost.JSON refuses an exponent that does not fit into an int, which a JSON number may well have; the first
/// nine digits always fit.
Part findLongExponent(std::string_view text, std::size_t from);

/// How much of the text can be given to the parser so that no number is cut in two.
std::size_t endOfLastToken(std::string_view text);

}  // namespace orvantis::json
