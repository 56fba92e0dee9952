#pragma once

#include <cstddef>
#include <optional>
#include <span>

namespace orvantis::toolkit {

/// Decompresses LZF, the compression of PCD files: runs of up to 32 bytes as they are, and references of 3 to
/// 264 bytes to what was written up to 8192 bytes before. The input must fill the output exactly. Reads and
/// writes nothing outside of the two, whatever the input.
/// @return nothing when it does; else the offset of the input where it is damaged (its size: it ends too
/// early)
/// noexcept
std::optional<std::size_t> decompressLzf(std::span<const std::byte> in, std::span<std::byte> out) noexcept;

}  // namespace orvantis::toolkit
