#pragma once

#include <cstddef>
#include <optional>
#include <span>

namespace orvantis::toolkit {

/// Decompresses LZF, the compression of PCD files: runs of up to 32 bytes as they are, and references of 3 to
/// 264 bytes to bytes that were written up to 8192 bytes before. The input must fill the output exactly.
/// Reads and writes nothing outside of both, whatever the input is.
/// @return nothing on success, else the offset at which the input is damaged; the size of the input when it
///   ends too early
std::optional<std::size_t> decompressLzf(std::span<const std::byte> in, std::span<std::byte> out) noexcept;

}  // namespace orvantis::toolkit
