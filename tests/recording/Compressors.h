#pragma once

#include <string>

namespace orvantis::testing {

std::string bzip2Of(const std::string& bytes);
std::string zstdOf(const std::string& bytes, bool hasChecksum = false, bool saysSize = true);
/// One frame. Linked blocks refer to the blocks before them.
std::string lz4Of(const std::string& bytes, bool hasLinkedBlocks = false, bool hasChecksum = false);

}  // namespace orvantis::testing
