#pragma once

#include <cstddef>

namespace orvantis::fuzz {

/// The most bytes from `operator new` that were in use at once since the last `forgetPeak`, minus those that
/// were in use at that time.
std::size_t peakOfMemory();
void forgetPeak();

}  // namespace orvantis::fuzz
