#include <memory>

#include <logging/LogStream.h>

#include "logging/LogRecord.h"

namespace orvantis {

LogStream::LogStream(std::unique_ptr<detail::LogRecord> record) noexcept
    : record_(record.release()), stream_(record_ != nullptr ? &record_->stream() : nullptr) {}

void LogStream::emit() noexcept {
  const std::unique_ptr<detail::LogRecord> record(record_);
  try {
    record->emit();
  } catch (...) {  // a destructor must not throw, whatever a host's sink throws
  }
}

}  // namespace orvantis
