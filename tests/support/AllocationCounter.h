#pragma once

#include <cstddef>

namespace orvantis::testing {

/// Counts the calls of `operator new` that this thread makes while the object lives.
class AllocationCounter {
 public:
  AllocationCounter();
  std::size_t count() const;
  /// What they asked for, whether or not it was freed since.
  std::size_t bytes() const;

 private:
  std::size_t start_;
  std::size_t startBytes_;
};

/// Makes the allocation number `n` (from 0) that this thread makes from now on fail, and no other.
class FailingAllocation {
 public:
  explicit FailingAllocation(std::size_t n);
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;
  ~FailingAllocation();
  /// Whether that allocation was reached.
  bool happened() const;
};

}  // namespace orvantis::testing
