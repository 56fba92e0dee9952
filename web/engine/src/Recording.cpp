#include "Recording.h"

#include <algorithm>
#include <utility>

namespace orvantis::engine {
namespace {

constexpr std::size_t mebibyte = std::size_t{1} << 20U;
// Two documents are compared, and each has a version before its edit.
constexpr std::size_t mostCounts = 4;

}  // namespace

Recording::Recording(RecordingFiles files, RecordingOptions options)
    : files_(std::move(files)), options_(std::move(options)) {
  for (const NamedSource& cloud : files_.clouds) {
    size_ += cloud.size;
  }
  size_ += files_.tracks ? files_.tracks->size : 0;
}

std::size_t Recording::pointBudget() const {
  constexpr std::size_t largest = 1024 * mebibyte;
  return size_ > largest ? 0 : 400 * mebibyte;
}

std::shared_ptr<const FrameCounts> Recording::countsOf(const ZoneSignatures& zones) {
  const auto found = std::find_if(counts_.begin(), counts_.end(),
                                  [&](const auto& counts) { return counts->zones.isSame(zones); });
  if (found == counts_.end()) {
    return nullptr;
  }
  counts_.splice(counts_.begin(), counts_, found);
  return counts_.front();
}

void Recording::keep(FrameCounts counts) {
  counts_.push_front(std::make_shared<const FrameCounts>(std::move(counts)));
  counts_.resize(std::min(counts_.size(), mostCounts));
}

}  // namespace orvantis::engine
