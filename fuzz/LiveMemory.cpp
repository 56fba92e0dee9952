#include "LiveMemory.h"

#include <algorithm>
#include <cstdlib>
#include <new>

#include <malloc.h>

namespace {

std::size_t live = 0;
std::size_t start = 0;
std::size_t peak = 0;

void* takeOrNull(std::size_t size) {
  void* const memory = std::malloc(size);
  live += malloc_usable_size(memory);
  peak = std::max(peak, live);
  return memory;
}

void* take(std::size_t size) {
  void* const memory = takeOrNull(size);
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  return memory;
}

void giveBack(void* memory) {
  if (memory != nullptr) {
    live -= malloc_usable_size(memory);
    std::free(memory);
  }
}

}  // namespace

void* operator new(std::size_t size) {
  return take(size);
}
void* operator new[](std::size_t size) {
  return take(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return takeOrNull(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return takeOrNull(size);
}
void operator delete(void* memory) noexcept {
  giveBack(memory);
}
void operator delete[](void* memory) noexcept {
  giveBack(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  giveBack(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  giveBack(memory);
}

namespace orvantis::fuzz {

std::size_t peakOfMemory() {
  return peak - start;
}

void forgetPeak() {
  start = live;
  peak = live;
}

}  // namespace orvantis::fuzz
