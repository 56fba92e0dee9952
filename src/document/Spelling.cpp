#include "document/Spelling.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "text/LowerCase.h"

namespace orvantis::toolkit {
namespace {

std::size_t distance(std::string_view a, std::string_view b) {
  // row i, column j: the distance of the first i letters of a from the first j of b
  std::vector<std::vector<std::size_t>> d(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
  for (std::size_t i = 0; i <= a.size(); ++i) {
    for (std::size_t j = 0; j <= b.size(); ++j) {
      if (i == 0 || j == 0) {
        d[i][j] = i + j;
        continue;
      }
      const bool same = lowerCase(a[i - 1]) == lowerCase(b[j - 1]);
      d[i][j] = std::min({d[i - 1][j] + 1, d[i][j - 1] + 1, d[i - 1][j - 1] + (same ? 0U : 1U)});
      if (i > 1 && j > 1 && lowerCase(a[i - 1]) == lowerCase(b[j - 2]) &&
          lowerCase(a[i - 2]) == lowerCase(b[j - 1])) {
        d[i][j] = std::min(d[i][j], d[i - 2][j - 2] + 1);
      }
    }
  }
  return d[a.size()][b.size()];
}

}  // namespace

std::string_view nearest(std::string_view word, std::span<const std::string_view> candidates) {
  constexpr std::size_t longestWord = 64;  // a longer word is not a misspelt key
  std::string_view best;
  if (word.size() > longestWord) {
    return best;
  }
  // At most one slip in three letters, so that "minimum" is not taken for "name".
  std::size_t bestDistance = word.size() / 3 + 1;
  for (const std::string_view candidate : candidates) {
    const std::size_t candidateDistance = distance(word, candidate);
    if (candidateDistance < bestDistance) {
      best = candidate;
      bestDistance = candidateDistance;
    }
  }
  return best;
}

}  // namespace orvantis::toolkit
