#pragma once

#include <vector>

#include "document/FieldZones.h"
#include "session/Coordinates.h"

namespace orvantis::toolkit {

/// Notes between the heights of which zones there were points: points in one frame of reference and zones in
/// another look like an empty scene.
class HeightWatch {
 public:
  explicit HeightWatch(const std::vector<FieldZone>& zones) : unseen_(zones) {}

  void add(const Points& points);

  /// The zones between whose heights there was no finite point yet.
  const std::vector<FieldZone>& unseen() const { return unseen_; }

 private:
  std::vector<FieldZone> unseen_;
};

}  // namespace orvantis::toolkit
