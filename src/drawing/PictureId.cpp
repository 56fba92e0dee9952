#include "drawing/PictureId.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace orvantis::toolkit {
namespace {

using filter::detection::Point;

// FNV-1a, 64 bits.
class Hash {
 public:
  void add(std::string_view bytes) {
    for (const char c : bytes) {
      value_ = (value_ ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
    }
    value_ = (value_ ^ 0x100U) *
             0x100000001B3U;  // marks the end of a text, so that "ab", "c" differs from "a", "bc"
  }
  void add(const Point& p) {
    for (const double value : {p.x(), p.y()}) {
      std::array<char, sizeof(double)> bytes{};
      std::memcpy(bytes.data(), &value, sizeof(double));
      add(std::string_view(bytes.data(), bytes.size()));
    }
  }
  std::string text() const {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (unsigned shift = 0; shift < 32U; shift += 4U) {
      text += digits[(value_ >> shift) & 0xFU];
    }
    return text;
  }

 private:
  std::uint64_t value_ = 0xCBF29CE484222325U;
};

}  // namespace

std::string idPrefixOf(const PlanContent& content) {
  Hash hash;
  hash.add(content.title);
  for (const PlanContent::Area& area : content.areas) {
    hash.add(area.name);
    for (const Point& p : area.ring) {
      hash.add(p);
    }
  }
  for (const PlanContent::Line& line : content.lines) {
    hash.add(line.first);
    hash.add(line.second);
  }
  for (const PlanContent::Track& track : content.tracks) {
    hash.add(track.className);
    for (const Point& p : track.path) {
      hash.add(p);
    }
  }
  if (content.extent) {
    hash.add(Point(content.extent->left, content.extent->bottom));
    hash.add(Point(content.extent->right, content.extent->top));
  }
  return "p" + hash.text() + "-";
}

}  // namespace orvantis::toolkit
