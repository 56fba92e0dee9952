#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

#include "files/ByteSource.h"
#include "recording/Decoders.h"
#include "recording/MessageReader.h"

namespace orvantis::toolkit {

enum class RecordingKind : std::uint8_t { mcap, bag };

/// Whether a file is a recording, from its first 16 bytes (or all, if it has fewer). Also true for a file
/// that is compressed as a whole, for a bag of an old version and for a recording in a database:
/// `openRecording` then says what cannot be read and what to do. Throws nothing.
bool isRecording(std::span<const std::byte> begin);

/// A recording whose format was recognised.
struct OpenRecording {
  RecordingKind kind{};
  std::unique_ptr<ByteSource> unfolded;  ///< for a file that is compressed as a whole; `messages` reads it
  std::unique_ptr<MessageReader> messages;
};

/// The source must outlive the result.
/// @throws ReadError when the bytes are not a recording that can be read
OpenRecording openRecording(ByteSource& source, const Decoders& decoders);

}  // namespace orvantis::toolkit
