#pragma once

#include <cstdio>
#include <cstdlib>

/// Ends the program when a condition that must hold is false, so that the fuzzer keeps the input.
#define ORVANTIS_FUZZ_CHECK(condition)                                                    \
  do {                                                                                    \
    if (!(condition)) {                                                                   \
      std::fprintf(stderr, "%s:%d: does not hold: %s\n", __FILE__, __LINE__, #condition); \
      std::abort();                                                                       \
    }                                                                                     \
  } while (false)
