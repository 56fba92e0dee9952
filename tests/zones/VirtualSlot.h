#pragma once

#include <cstddef>
#include <cstring>

namespace orvantis::testing {

/// The place of a virtual operation in its class's table, where the two entries of the destructor come first.
/// A host that was built against an earlier release calls by place: a new operation comes after the last one.
template <typename Operation>
std::size_t slotOf(Operation operation) {
  static_assert(sizeof(operation) >= sizeof(std::size_t));
  std::size_t offset = 0;
  std::memcpy(&offset, &operation, sizeof(offset));
  return offset / sizeof(void*);
}

}  // namespace orvantis::testing
