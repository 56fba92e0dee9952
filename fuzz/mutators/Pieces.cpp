#include "mutators/Pieces.h"

#include <utility>

namespace orvantis::fuzz {

Content Pieces::joined() const {
  Content content = before;
  for (const Content& piece : pieces) {
    content.insert(content.end(), piece.begin(), piece.end());
  }
  content.insert(content.end(), behind.begin(), behind.end());
  return content;
}

void Pieces::rearrange(Chance& chance) {
  const std::size_t first = chance.below(pieces.size());
  const std::size_t second = chance.below(pieces.size());
  const auto at = [this](std::size_t i) { return pieces.begin() + static_cast<std::ptrdiff_t>(i); };
  switch (chance.below(3)) {
    case 0:
      pieces.erase(at(first));
      break;
    case 1: {
      const Content repeated = pieces[first];
      pieces.insert(at(second), repeated);
      break;
    }
    default:
      std::swap(pieces[first], pieces[second]);
  }
}

}  // namespace orvantis::fuzz
