#pragma once

#include <string>

#include "drawing/LabelPlacer.h"
#include "drawing/SvgPlan.h"

namespace orvantis::toolkit {

/// Where a crossing was counted. @param isSmall one of very many
std::string crossingMark(const Pixel& at, const std::string& title, bool isSmall);

/// The origin of the plane, where the sensor often is.
std::string originMark(const Pixel& at);

/// Begins the ids of a picture: the same for the same picture, another for any other, so that several can
/// stand in one page.
std::string idPrefixOf(const PlanContent& content);

}  // namespace orvantis::toolkit
