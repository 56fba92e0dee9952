#pragma once

#include <string_view>

#include "document/Finding.h"

namespace orvantis::toolkit {

struct SyntaxFault;

/// Says why a text is not JSON by naming the writer's mistake: a comma too many, a comment, single quotes, a
/// decimal comma, another encoding. It has an excerpt of the line if that can be shown.
Finding describe(const SyntaxFault& fault, std::string_view text);

}  // namespace orvantis::toolkit
