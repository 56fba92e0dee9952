#pragma once

#include <cstddef>
#include <exception>

#include "support/AllocationCounter.h"

namespace orvantis::testing {

/// How an operation ended.
enum class Outcome {
  Done,              ///< no allocation failed
  Failed,            ///< an exception
  DoneWithoutMemory  ///< an allocation failed that the operation could do without
};

/// Runs the operation with allocation number `n` (from 0) failing. To go through all of them, call it with
/// rising numbers until it is done.
template <typename Operation>
Outcome runFailing(std::size_t n, const Operation& operation) {
  const FailingAllocation failure(n);
  try {
    operation();
  } catch (const std::exception&) {
    return Outcome::Failed;
  }
  return failure.happened() ? Outcome::DoneWithoutMemory : Outcome::Done;
}

}  // namespace orvantis::testing
