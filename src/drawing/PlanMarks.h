#pragma once

#include <string>
#include <string_view>

#include "drawing/LabelPlacer.h"
#include "drawing/SvgElement.h"

namespace orvantis::toolkit {

/// The place where a crossing was counted. @param isSmall for a picture with very many crossings
SvgElement crossingMark(const Pixel& middle, std::string_view title, bool isSmall);

/// The origin of the plane, where the sensor often is.
SvgElement originMark(const Pixel& middle);

/// A segment with an arrow head at its second end and an L on its left side.
SvgElement counterLineMark(const Pixel& from, const Pixel& to, const std::string& ids);
/// The place of that L. For a segment without length, which has no L, the second end.
Pixel leftSideOf(const Pixel& from, const Pixel& to);

/// An arrow head for the ends of lines. A picture defines it once.
SvgElement arrowHead(const std::string& id, std::string_view colour, double size);

}  // namespace orvantis::toolkit
