#pragma once

#include <memory>
#include <optional>
#include <vector>

#include <filter/classify/PointClassifier.h>
#include <filter/detection/Zone3dBase.h>

#include "document/Configuration.h"

namespace orvantis::python {

/// What the verdicts of a site depend on, held so that a shape's address is not given to another one: shapes
/// are not changed once made, only replaced.
class ClassifierKey {
 public:
  explicit ClassifierKey(const filter::detection::ZoneDetector& detector);
  explicit ClassifierKey(const filter::detection::Zone3dBase& zone) { add(&zone); }

  bool isOf(const filter::detection::ZoneDetector& detector) const;
  bool isOf(const filter::detection::Zone3dBase& zone) const;

 private:
  struct Entry {
    std::shared_ptr<const filter::detection::Zone> shape;
    double zMin;
    double zMax;
  };

  void add(const filter::detection::Zone3dBase* zone);
  static bool isSame(const Entry& entry, const filter::detection::Zone3dBase* zone);

  std::vector<Entry> entries_;
};

/// The classifier of what was asked last; made anew when the content has changed since. Used while the
/// interpreter's lock is held.
struct ClassifierCache {
  std::optional<ClassifierKey> key;
  std::optional<filter::classify::PointClassifier> classifier;
};

}  // namespace orvantis::python
