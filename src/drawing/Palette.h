#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace orvantis::toolkit::palette {

// Every colour of a picture.

inline constexpr std::string_view ink = "#1f2933";      ///< texts and marks without a colour of their own
inline constexpr std::string_view paleInk = "#52606d";  ///< numbers at the axes
inline constexpr std::string_view paper = "#ffffff";
inline constexpr std::string_view plane = "#fbfcfd";  ///< behind the plan and the rows of the time line
inline constexpr std::string_view grid = "#e4e8ec";
inline constexpr std::string_view frame = "#9aa5b1";
inline constexpr std::string_view anyField = "#7b8794";  ///< signs of the legend that mean all fields

inline constexpr std::string_view exclusion = "#5b6672";
inline constexpr std::string_view counterLine = "#b3123f";
inline constexpr std::string_view crossing = "#ffd43b";

// A scan: points on the ground, a little above it and high above it, and points that count in a zone.
inline constexpr std::string_view ground = "#d5dbe1";
inline constexpr std::string_view low = "#93a4b5";
inline constexpr std::string_view high = "#3e5870";
inline constexpr std::string_view counted = "#b8500c";

// The colours of evaluation fields and of classes of tracks. Colour-blind readers can tell them apart.
inline constexpr std::array<std::string_view, 8> fields = {"#0072b2", "#d55e00", "#009e73", "#aa4499",
                                                           "#b8860b", "#56a0d3", "#7a5195", "#8c564b"};
inline constexpr std::string_view trackWithoutClass = "#243b53";
inline constexpr std::array<std::string_view, 5> trackClasses = {"#00629b", "#a33b00", "#00735c", "#8a2d7c",
                                                                 "#6b5900"};

constexpr std::string_view field(int index) {
  return fields[static_cast<std::size_t>(index) % fields.size()];
}

}  // namespace orvantis::toolkit::palette
