#include <algorithm>

#include "mutators/Mutators.h"

namespace orvantis::fuzz {

bool mutateSession(Content& content, Chance& chance) {
  const auto middle = std::find(content.begin(), content.end(), std::uint8_t{0});
  if (middle == content.end()) {
    return false;
  }
  Content document(content.begin(), middle);
  Content tracks(middle + 1, content.end());
  if (!(chance.oneIn(2) ? mutateJson(document, chance) : mutateLines(tracks, chance))) {
    return false;
  }
  document.push_back(0);
  document.insert(document.end(), tracks.begin(), tracks.end());
  content = document;
  return true;
}

}  // namespace orvantis::fuzz
