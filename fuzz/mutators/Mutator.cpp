// How libFuzzer makes a new input from another one: half of the time it changes bytes in its own ways, half
// of the time what the file consists of.

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "mutators/Mutators.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t mostSize);

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t mostSize,
                                               unsigned seed) {
  orvantis::fuzz::Chance chance(seed);
  orvantis::fuzz::Content content(data, data + size);
  if (chance.oneIn(2) || !ORVANTIS_FUZZ_MUTATE(content, chance) || content.size() > mostSize) {
    return LLVMFuzzerMutate(data, size, mostSize);
  }
  std::copy(content.begin(), content.end(), data);
  return content.size();
}
