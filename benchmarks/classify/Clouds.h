#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <filter/classify/PointClassifier.h>

namespace orvantis::benchmarks {

/// Points as three arrays of float.
struct Cloud {
  std::vector<float> x;
  std::vector<float> y;
  std::vector<float> z;

  std::size_t size() const { return x.size(); }
  filter::classify::PointsView<float> view() const {
    return filter::classify::PointsView<float>::separate(x.data(), y.data(), z.data(), size());
  }
  void append(float px, float py, float pz);
};

/// Uniform over a square of `extent` m about the origin, -1.5 to 3.5 m high.
Cloud uniformCloud(std::size_t size, double extent);

/// The points of a sensor with 64 rings, 2 m above level ground, ring after ring.
Cloud ringCloud(std::size_t size);

Cloud shuffled(Cloud cloud);

/// Every `period`th point becomes NaN, which is how sensors mark missing returns.
Cloud withNaN(Cloud cloud, std::size_t period);

/// The points of a file of little-endian float32 records x, y, z, intensity; empty when it cannot be read.
Cloud readFrame(const std::string& path);

}  // namespace orvantis::benchmarks
