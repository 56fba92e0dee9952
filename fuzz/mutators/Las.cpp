#include <algorithm>
#include <array>

#include "mutators/Mutators.h"

namespace orvantis::fuzz {
namespace {

struct HeaderField {
  std::size_t offset;
  std::size_t width;
};

// What a reader of points looks at: the version, sizes, the format of points, how many there are and where,
// the step and the origin of their coordinates.
constexpr std::array<HeaderField, 16> fields{{{25, 1},
                                              {94, 2},
                                              {96, 4},
                                              {100, 4},
                                              {104, 1},
                                              {105, 2},
                                              {107, 4},
                                              {131, 8},
                                              {139, 8},
                                              {147, 8},
                                              {155, 8},
                                              {163, 8},
                                              {171, 8},
                                              {235, 8},
                                              {243, 4},
                                              {247, 8}}};
constexpr std::size_t leastHeader = 227;

}  // namespace

bool mutateLas(Content& content, Chance& chance) {
  if (content.size() < leastHeader) {
    return false;
  }
  const auto firstPoint = static_cast<std::size_t>(numberAt(content, 96, 4));
  if (firstPoint + 4 <= content.size() && chance.oneIn(4)) {
    changeNumber(content, firstPoint + chance.below(content.size() - firstPoint - 3), 4, chance);
    return true;
  }
  const HeaderField field = fields[chance.below(fields.size())];
  if (field.offset + field.width > content.size()) {
    return false;
  }
  changeNumber(content, field.offset, field.width, chance);
  return true;
}

}  // namespace orvantis::fuzz
