#pragma once

#include <string>
#include <string_view>

#include "drawing/LabelPlacer.h"
#include "drawing/SvgElement.h"

namespace orvantis::toolkit {

/// Where a crossing was counted. @param isSmall one of very many
SvgElement crossingMark(const Pixel& at, std::string_view title, bool isSmall);

/// The origin of the plane, where the sensor often is.
SvgElement originMark(const Pixel& at);

/// A segment with an arrow head at its second end and an L on its left side.
SvgElement counterLineMark(const Pixel& from, const Pixel& to, const std::string& ids);
/// The place of that L; the second end for a segment without length, which has none.
Pixel leftSideOf(const Pixel& from, const Pixel& to);

/// An arrow head for ends of lines, to be defined once in a picture.
SvgElement arrowHead(const std::string& id, std::string_view colour, double size);

}  // namespace orvantis::toolkit
