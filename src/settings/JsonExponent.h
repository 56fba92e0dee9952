#pragma once

#include <cstddef>
#include <string_view>

namespace orvantis::json {

/// A part of a text, from `begin` up to `end`.
struct Part {
  std::size_t begin;
  std::size_t end;
};

/// The digits of an exponent beyond its first nine, at or after `from`. When there are none, both ends are
/// the end of the text. It also finds them inside of strings.
///
/// Boost.JSON refuses an exponent that does not fit into an int, although JSON allows it. The first nine
/// digits always fit.
Part findLongExponent(std::string_view text, std::size_t from);

/// How many bytes of the text the parser can be given without cutting a number in two.
std::size_t endOfLastToken(std::string_view text);

}  // namespace orvantis::json
