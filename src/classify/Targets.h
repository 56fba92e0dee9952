#pragma once

// Before Highway's headers, in every source that is compiled once for each kind of processor: vectors of
// unknown length cannot be members of a class.
#define HWY_DISABLED_TARGETS (HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128 | HWY_RVV)
