#include "HostSource.h"

#include <algorithm>

#include "files/Failure.h"

extern "C" {
// Copies bytes of a file to an address. @return how many; below zero when the file cannot be read
__attribute__((import_module("host"), import_name("read"))) int engineRead(int file, double offset,
                                                                           std::size_t count, void* to);
}

namespace orvantis::engine {
namespace {

// Each call of the host costs as much as some hundred kilobytes.
constexpr std::uint64_t readAhead = std::uint64_t{1} << 20U;

}  // namespace

HostSource::HostSource(std::string name, int number, std::uint64_t size)
    : name_(std::move(name)), number_(number), size_(size) {}

std::span<const std::byte> HostSource::bytes(std::uint64_t offset, std::uint64_t count) {
  const std::uint64_t end = offset >= size_ ? offset : offset + std::min(count, size_ - offset);
  if (offset >= size_) {
    return {};
  }
  if (offset < begin_ || end > begin_ + buffer_.size()) {
    const auto wanted = static_cast<std::size_t>(std::min(std::max(end - offset, readAhead), size_ - offset));
    buffer_.resize(wanted);
    begin_ = offset;
    const int got = engineRead(number_, static_cast<double>(offset), wanted, buffer_.data());
    buffer_.resize(got < 0 ? 0 : static_cast<std::size_t>(got));
    if (got < 0) {
      throw toolkit::Failure(name_, "cannot be read: the browser gives no bytes; was it changed or removed?");
    }
  }
  const auto first = static_cast<std::size_t>(offset - begin_);
  const std::size_t held = buffer_.size() - first;
  return std::span<const std::byte>(buffer_).subspan(
      first, static_cast<std::size_t>(std::min<std::uint64_t>(end - offset, held)));
}

}  // namespace orvantis::engine
