#pragma once

#include <cstdint>
#include <vector>

#include <hwy/highway.h>

namespace orvantis::testing {

/// Makes one kind of processor instructions the only one while it lives.
class OnlyTarget {
 public:
  explicit OnlyTarget(std::int64_t target) {
    hwy::SetSupportedTargetsForTest(target);
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
  }
  OnlyTarget(const OnlyTarget&) = delete;
  OnlyTarget& operator=(const OnlyTarget&) = delete;
  ~OnlyTarget() {
    hwy::SetSupportedTargetsForTest(0);
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
  }
};

/// Every kind that this build has code for and this processor can run.
inline std::vector<std::int64_t> everyTarget() {
  std::vector<std::int64_t> targets;
  for (std::int64_t rest = hwy::SupportedTargets() & HWY_TARGETS; rest != 0; rest &= rest - 1) {
    targets.push_back(rest & -rest);
  }
  return targets;
}

}  // namespace orvantis::testing
