#pragma once

#include <cstddef>
#include <vector>

#include "mutators/Content.h"

namespace orvantis::fuzz {

/// A content that consists of pieces, with something before and behind them.
struct Pieces {
  Content before;
  std::vector<Content> pieces;
  Content behind;

  Content joined() const;
  /// Removes, repeats or swaps pieces. There must be one.
  void rearrange(Chance& chance);
};

}  // namespace orvantis::fuzz
