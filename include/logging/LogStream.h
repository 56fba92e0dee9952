#pragma once

#include <memory>
#include <ostream>
#include <utility>

#include <orvantis/Api.h>

namespace orvantis {

namespace detail {
class LogRecord;
}

/// One record while it is being written. Destroying the stream emits what was written as one sink message,
/// text unchanged, without a line end. A stream whose level is off holds no stream, allocates nothing and
/// emits nothing.
///
/// Numbers are formatted in the classic locale, whatever the process locale is. Used by one thread.
class ORVANTIS_API LogStream {
 public:
  /// A stream that is off.
  LogStream() noexcept = default;
  /// A stream that is on; null gives one that is off.
  explicit LogStream(std::unique_ptr<detail::LogRecord> record) noexcept;
  /// Takes the record over; the other stream is off afterwards and emits nothing.
  LogStream(LogStream&& other) noexcept
      : record_(std::exchange(other.record_, nullptr)), stream_(std::exchange(other.stream_, nullptr)) {}
  LogStream& operator=(LogStream&&) = delete;
  LogStream(const LogStream&) = delete;
  LogStream& operator=(const LogStream&) = delete;
  /// Emits the record. Throws nothing, whatever a sink throws.
  ~LogStream() {
    if (record_ != nullptr) {
      emit();
    }
  }

  /// The stream to write to, owned by this object; null when the level is off.
  std::ostream* stream() const noexcept { return stream_; }

  /// Writes the pieces one after another, or does not touch them when the level is off. Throws what writing a
  /// piece of the host's own type throws, and nothing else: the stream holds back its own failures, also
  /// std::bad_alloc.
  template <typename... Pieces>
  void write(const Pieces&... pieces) const {
    if (stream_ != nullptr) {
      ((*stream_ << pieces), ...);
    }
  }

 private:
  // Ends the record and frees it. Apart from the destructor, so that a stream that is off costs no call.
  void emit() noexcept;

  detail::LogRecord* record_ = nullptr;  // owned
  std::ostream* stream_ = nullptr;
};

}  // namespace orvantis
