#include "classify/Clouds.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <limits>
#include <numbers>
#include <numeric>
#include <random>

namespace orvantis::benchmarks {

void Cloud::append(float px, float py, float pz) {
  x.push_back(px);
  y.push_back(py);
  z.push_back(pz);
}

Cloud uniformCloud(std::size_t size, double extent) {
  std::mt19937_64 random(1);
  std::uniform_real_distribution<double> plan(-0.5 * extent, 0.5 * extent);
  std::uniform_real_distribution<double> height(-1.5, 3.5);
  Cloud cloud;
  for (std::size_t i = 0; i < size; ++i) {
    const double x = plan(random);
    const double y = plan(random);
    cloud.append(static_cast<float>(x), static_cast<float>(y), static_cast<float>(height(random)));
  }
  return cloud;
}

Cloud ringCloud(std::size_t size) {
  std::mt19937_64 random(2);
  std::normal_distribution<double> noise(0.0, 0.02);
  constexpr std::size_t numRings = 64;
  constexpr double farthest = 60.0;
  const std::size_t perRing = (size + numRings - 1) / numRings;
  Cloud cloud;
  for (std::size_t i = 0; i < size; ++i) {
    const double elevation = (-24.0 + 0.4 * static_cast<double>(i / perRing)) * std::numbers::pi / 180.0;
    const double azimuth =
        2.0 * std::numbers::pi * static_cast<double>(i % perRing) / static_cast<double>(perRing);
    // Walls whose distance depends on the direction.
    const double wall = 20.0 + 15.0 * std::sin(3.0 * azimuth) + 5.0 * std::sin(17.0 * azimuth);
    const double ground = elevation < 0.0 ? -2.0 / std::tan(elevation) : farthest;
    const double range = std::min({wall, ground, farthest}) + noise(random);
    cloud.append(static_cast<float>(range * std::cos(azimuth)), static_cast<float>(range * std::sin(azimuth)),
                 static_cast<float>(2.0 + range * std::tan(elevation)));
  }
  return cloud;
}

Cloud shuffled(Cloud cloud) {
  std::vector<std::size_t> order(cloud.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::ranges::shuffle(order, std::mt19937_64(3));
  Cloud result;
  for (const std::size_t i : order) {
    result.append(cloud.x[i], cloud.y[i], cloud.z[i]);
  }
  return result;
}

Cloud withNaN(Cloud cloud, std::size_t period) {
  constexpr float nan = std::numeric_limits<float>::quiet_NaN();
  for (std::size_t i = 0; i < cloud.size(); i += period) {
    cloud.x[i] = cloud.y[i] = cloud.z[i] = nan;
  }
  return cloud;
}

Cloud readFrame(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::array<float, 4> record{};
  Cloud cloud;
  while (file.read(reinterpret_cast<char*>(record.data()), sizeof(record))) {
    cloud.append(record[0], record[1], record[2]);
  }
  return cloud;
}

}  // namespace orvantis::benchmarks
