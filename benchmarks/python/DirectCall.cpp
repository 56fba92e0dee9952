// The call of the library, for a script that times it beside the call of the Python module: in the same
// process, on the same arrays.

#include <cstddef>
#include <cstdint>
#include <sstream>

#include <time.h>

#include <filter/classify/PointClassifier.h>
#include <filter/detection/ZoneDetector.h>
#include <settings/SettingsManager.h>

namespace {

using orvantis::SettingsManager;
using orvantis::filter::classify::PointClassifier;
using orvantis::filter::classify::PointsView;
using orvantis::filter::detection::ZoneDetector;

// Of this thread.
double processorSeconds() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

template <typename Real>
double seconds(const PointClassifier& classifier, const Real* points, std::size_t size, std::uint64_t* masks,
               int calls) {
  const PointsView<Real> view{points, points + 1, points + 2, 3 * sizeof(Real), size};
  const double begin = processorSeconds();
  for (int i = 0; i < calls; ++i) {
    classifier.classify(view, masks);
  }
  return processorSeconds() - begin;
}

}  // namespace

#define EXPORTED extern "C" __attribute__((visibility("default")))

/// The classifier of a zone document that loads; null for one that does not. Lives until the process ends.
EXPORTED const PointClassifier* classifier_of(const char* document) {
  std::istringstream in(document);
  SettingsManager settings;
  if (!settings.loadStream(in, SettingsManager::JSON)) {
    return nullptr;
  }
  ZoneDetector detector;
  detector.load(settings);
  return new PointClassifier(detector);
}

/// What so many calls take; points are rows of x, y and z.
EXPORTED double seconds_of_float32(const PointClassifier* classifier, const float* points, std::size_t size,
                                   std::uint64_t* masks, int calls) {
  return seconds(*classifier, points, size, masks, calls);
}
EXPORTED double seconds_of_float64(const PointClassifier* classifier, const double* points, std::size_t size,
                                   std::uint64_t* masks, int calls) {
  return seconds(*classifier, points, size, masks, calls);
}
