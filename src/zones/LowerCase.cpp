#include "zones/LowerCase.h"

namespace orvantis::filter::detection {

std::string toLower(std::string text) {
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') {
      c = static_cast<char>(c - 'A' + 'a');
    }
  }
  return text;
}

}  // namespace orvantis::filter::detection
