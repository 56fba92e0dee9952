#pragma once

#include <string>

#include "drawing/SvgPlan.h"

namespace orvantis::toolkit {

/// Begins the ids of a picture: the same for the same picture, another for any other, so that several can
/// stand in one page.
std::string idPrefixOf(const PlanContent& content);

}  // namespace orvantis::toolkit
