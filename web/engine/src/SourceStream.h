#pragma once

#include <array>
#include <cstring>
#include <istream>
#include <memory>
#include <streambuf>

#include "CloudStream.h"

namespace orvantis::engine {

/// The bytes of a file as a stream, which is read by ranges.
std::unique_ptr<std::istream> streamOf(const NamedSource& file);

}  // namespace orvantis::engine
