// The masks of a million points on borders, as this module finds them: the number that every machine comes
// to.

#include <cstdint>

#include "classify/MaskDigest.h"

using namespace orvantis;           // NOLINT(google-build-using-namespace)
using namespace orvantis::testing;  // NOLINT(google-build-using-namespace)

extern "C" {

__attribute__((used, visibility("default"))) std::uint64_t digest_wanted() {
  return expectedDigest;
}

__attribute__((used, visibility("default"))) std::uint64_t digest_found() {
  BorderlineSites sites(90);
  Digest digest;
  for (std::size_t i = 0; i < numSites; ++i) {
    const filter::classify::PointClassifier classifier(sites.site());
    const auto floats = sites.points(pointsPerSite, true);
    const auto doubles = sites.points(pointsPerSite, false);
    digest.add(masksOf<float>(classifier, floats));
    digest.add(masksOf<double>(classifier, doubles));
  }
  return digest.value();
}
}
