#include "support/AllocationCounter.h"

#include <cstdlib>
#include <limits>
#include <new>

namespace {

constexpr std::size_t never = std::numeric_limits<std::size_t>::max();

thread_local std::size_t allocations = 0;
thread_local std::size_t allocatedBytes = 0;
thread_local std::size_t failingAllocation = never;

void* allocate(std::size_t size) {
  if (allocations++ == failingAllocation) {
    throw std::bad_alloc();
  }
  allocatedBytes += size;
  if (void* memory = std::malloc(size != 0 ? size : 1)) {
    return memory;
  }
  throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t size) {
  return allocate(size);
}
void* operator new[](std::size_t size) {
  return allocate(size);
}
// These too: a sanitizer's own would not match the operator delete below.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  try {
    return allocate(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}
void* operator new[](std::size_t size, const std::nothrow_t& nothrow) noexcept {
  return operator new(size, nothrow);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}

namespace orvantis::testing {

AllocationCounter::AllocationCounter() : start_(allocations), startBytes_(allocatedBytes) {}

std::size_t AllocationCounter::count() const {
  return allocations - start_;
}

std::size_t AllocationCounter::bytes() const {
  return allocatedBytes - startBytes_;
}

FailingAllocation::FailingAllocation(std::size_t n) {
  failingAllocation = allocations + n;
}

FailingAllocation::~FailingAllocation() {
  failingAllocation = never;
}

bool FailingAllocation::happened() const {
  return allocations > failingAllocation;
}

}  // namespace orvantis::testing
