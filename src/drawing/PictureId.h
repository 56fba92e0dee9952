#pragma once

#include <string>

#include "drawing/SvgPlan.h"

namespace orvantis::toolkit {

/// The prefix of the ids in a picture. Different pictures have different prefixes, so that one page can show
/// several pictures.
std::string idPrefixOf(const PlanContent& content);

}  // namespace orvantis::toolkit
