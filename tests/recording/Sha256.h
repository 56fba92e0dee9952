#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace orvantis::testing {

/// The SHA-256 of some bytes (FIPS 180-4), as hexadecimal digits.
std::string sha256(const std::vector<unsigned char>& bytes);

}  // namespace orvantis::testing
