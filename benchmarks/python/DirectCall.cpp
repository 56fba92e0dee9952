// The call of the library, for a script that times it beside the call of the Python module: in the same
// process, on the same arrays.

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <sstream>

#include <filter/classify/PointClassifier.h>
#include <filter/detection/ZoneDetector.h>
#include <settings/SettingsManager.h>

namespace {

using orvantis::SettingsManager;
using orvantis::filter::classify::PointClassifier;
using orvantis::filter::classify::PointsView;
using orvantis::filter::detection::ZoneDetector;

template <typename Real>
double seconds(const PointClassifier& classifier, const Real* points, std::size_t size, std::uint64_t* masks,
               int calls) {
  const PointsView<Real> view{points, points + 1, points + 2, 3 * sizeof(Real), size};
  const auto begin = std::chrono::steady_clock::now();
  for (int i = 0; i < calls; ++i) {
    classifier.classify(view, masks);
  }
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
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
