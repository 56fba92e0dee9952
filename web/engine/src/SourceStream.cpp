#include "SourceStream.h"

#include <utility>

namespace orvantis::engine {
namespace {

class SourceBuffer final : public std::streambuf {
 public:
  explicit SourceBuffer(std::unique_ptr<toolkit::ByteSource> source) : source_(std::move(source)) {}

 protected:
  int_type underflow() override {
    constexpr std::size_t step = std::size_t{1} << 16U;
    const auto bytes = source_->bytes(offset_, step);
    if (bytes.empty()) {
      return traits_type::eof();
    }
    std::memcpy(room_.data(), bytes.data(), bytes.size());
    offset_ += bytes.size();
    setg(room_.data(), room_.data(), room_.data() + bytes.size());
    return traits_type::to_int_type(room_[0]);
  }

 private:
  std::unique_ptr<toolkit::ByteSource> source_;
  std::uint64_t offset_ = 0;
  std::array<char, std::size_t{1} << 16U> room_{};
};

class SourceStream final : public std::istream {
 public:
  explicit SourceStream(std::unique_ptr<toolkit::ByteSource> source)
      : std::istream(nullptr), buffer_(std::move(source)) {
    rdbuf(&buffer_);
    // What the host says about a file that cannot be read reaches the page.
    exceptions(std::ios::badbit);
  }

 private:
  SourceBuffer buffer_;
};

}  // namespace

std::unique_ptr<std::istream> streamOf(const NamedSource& file) {
  return std::make_unique<SourceStream>(file.open());
}

}  // namespace orvantis::engine
