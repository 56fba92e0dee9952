#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "drawing/LabelPlacer.h"

namespace orvantis::toolkit {

/// What the parts of a picture share.

/// Of the evaluation fields; told apart by colour-blind readers too.
std::string_view fieldColour(int field);
inline constexpr std::string_view ink = "#1f2933";
inline constexpr std::string_view paleInk = "#52606d";
inline constexpr std::string_view lineColour = "#b3123f";

/// A length or coordinate in pixels, to a tenth.
std::string px(double value);
std::string at(const Pixel& p);

/// At most so many characters, whole ones.
std::string shortened(const std::string& text, std::size_t characters);

/// The smallest 1, 2 or 5 times a power of ten that is not below.
double niceStep(double atLeast);
/// The decimals that multiples of such a step need.
int decimalsOf(double step);

}  // namespace orvantis::toolkit
