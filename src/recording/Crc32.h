#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace orvantis::toolkit {

/// The CRC-32 of ISO 3309 (polynomial 0x04C11DB7, bits reflected), which MCAP uses. Throws nothing.
/// @param before the CRC of the bytes before these; 0 when there are none
std::uint32_t crc32(std::span<const std::byte> bytes, std::uint32_t before = 0);

/// The CRC of two runs of bytes, one after the other, from the CRC of each and the length of the second.
/// Throws nothing.
std::uint32_t crc32OfBoth(std::uint32_t first, std::uint32_t second, std::uint64_t secondLength);

}  // namespace orvantis::toolkit
