#pragma once

#include <string_view>

#include "document/Finding.h"

namespace orvantis::toolkit {

struct SyntaxFault;

/// Says why a text is not JSON, in the words of who wrote it: a comma too many, a comment, single quotes, a
/// decimal comma, another encoding. With the line quoted, where it can be shown.
Finding describe(const SyntaxFault& fault, std::string_view text);

}  // namespace orvantis::toolkit
