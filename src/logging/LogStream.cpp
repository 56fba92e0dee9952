#include <utility>

#include <logging/LogStream.h>

#include "logging/LogRecord.h"

namespace orvantis {

LogStream::LogStream() noexcept = default;

LogStream::LogStream(std::unique_ptr<detail::LogRecord> record) noexcept
    : record_(std::move(record)), stream_(record_ ? &record_->stream() : nullptr) {}

LogStream::LogStream(LogStream&& other) noexcept
    : record_(std::move(other.record_)), stream_(std::exchange(other.stream_, nullptr)) {}

LogStream::~LogStream() {
  if (record_) {
    try {
      record_->emit();
    } catch (...) {  // a destructor must not throw, whatever a host's sink throws
    }
  }
}

}  // namespace orvantis
