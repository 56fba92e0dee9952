#include "classify/Contestants.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>

#define GEOS_USE_ONLY_R_API
#include <geos_c.h>

#include <filter/detection/Polygon.h>
#include <filter/detection/Sector.h>

namespace orvantis::benchmarks {
namespace {

using filter::classify::PointClassifier;
using namespace filter::detection;

struct ZoneOfBit {
  std::shared_ptr<Zone3dBase> zone;
  std::uint64_t bit;
};

std::vector<ZoneOfBit> zonesOf(const ZoneDetector& detector) {
  std::vector<ZoneOfBit> zones;
  for (int i = 0; i < 24; ++i) {
    if (const auto zone = detector.getZone(i / 3, i % 3)) {
      zones.push_back({zone, std::uint64_t{1} << PointClassifier::zoneBit(i / 3, i % 3)});
    }
  }
  int k = 0;
  for (const auto& zone : detector.getExclusionZoneVector()) {
    zones.push_back({zone, std::uint64_t{1} << PointClassifier::exclusionBit(k++)});
  }
  return zones;
}

class PerZoneCalls : public Contestant {
 public:
  explicit PerZoneCalls(const ZoneDetector& detector) : zones_(zonesOf(detector)) {}

  void run(const Cloud& cloud, std::size_t size, std::uint64_t* masks) const override {
    for (std::size_t i = 0; i < size; ++i) {
      std::uint64_t mask = 0;
      for (const ZoneOfBit& zone : zones_) {
        mask |= zone.zone->within(static_cast<double>(cloud.x[i]), static_cast<double>(cloud.y[i]),
                                  static_cast<double>(cloud.z[i]))
                    ? zone.bit
                    : 0;
      }
      masks[i] = mask;
    }
  }

 private:
  std::vector<ZoneOfBit> zones_;
};

class BoxedCalls : public Contestant {
 public:
  explicit BoxedCalls(const ZoneDetector& detector) {
    for (const ZoneOfBit& zone : zonesOf(detector)) {
      boxed_.push_back(boxed(zone));
    }
  }

  void run(const Cloud& cloud, std::size_t size, std::uint64_t* masks) const override {
    for (std::size_t i = 0; i < size; ++i) {
      const auto x = static_cast<double>(cloud.x[i]);
      const auto y = static_cast<double>(cloud.y[i]);
      const auto z = static_cast<double>(cloud.z[i]);
      std::uint64_t mask = 0;
      for (const Boxed& box : boxed_) {
        if (x >= box.minX && x <= box.maxX && y >= box.minY && y <= box.maxY && z >= box.minZ &&
            z <= box.maxZ && box.shape->within(Point(x, y))) {
          mask |= box.bit;
        }
      }
      masks[i] = mask;
    }
  }

 private:
  struct Boxed {
    double minX = std::numeric_limits<double>::max();
    double minY = std::numeric_limits<double>::max();
    double maxX = std::numeric_limits<double>::lowest();
    double maxY = std::numeric_limits<double>::lowest();
    double minZ;
    double maxZ;
    std::shared_ptr<Zone> shape;
    std::uint64_t bit;

    void include(double x, double y) {
      minX = std::min(minX, x);
      minY = std::min(minY, y);
      maxX = std::max(maxX, x);
      maxY = std::max(maxY, y);
    }
  };

  static Boxed boxed(const ZoneOfBit& zone) {
    Boxed box;
    box.minZ = zone.zone->getZMin();
    box.maxZ = zone.zone->getZMax();
    box.shape = zone.zone->getZone2d();
    box.bit = zone.bit;
    if (const auto* sector = dynamic_cast<const Sector*>(box.shape.get())) {
      double from = 0.0;
      double to = 0.0;
      double radius = 0.0;
      sector->getSector(from, to, radius);
      box.include(sector->getOrigin().x() - radius, sector->getOrigin().y() - radius);
      box.include(sector->getOrigin().x() + radius, sector->getOrigin().y() + radius);
    } else {
      std::vector<Point> ring;
      dynamic_cast<const Polygon&>(*box.shape).getPolygon(ring);
      for (const Point& vertex : ring) {
        box.include(vertex.x(), vertex.y());
      }
    }
    return box;
  }

  std::vector<Boxed> boxed_;
};

class PreparedGeometries : public Contestant {
 public:
  PreparedGeometries(const ZoneDetector& detector, const Cloud& cloud) {
    for (const ZoneOfBit& zone : zonesOf(detector)) {
      GEOSGeometry* polygon = polygonOf(*zone.zone->getZone2d());
      geometries_.push_back(polygon);
      prepared_.push_back(
          {GEOSPrepare_r(geos_, polygon), zone.zone->getZMin(), zone.zone->getZMax(), zone.bit});
    }
    for (std::size_t i = 0; i < cloud.size(); ++i) {
      points_.push_back(GEOSGeom_createPointFromXY_r(geos_, static_cast<double>(cloud.x[i]),
                                                     static_cast<double>(cloud.y[i])));
    }
  }
  ~PreparedGeometries() override {
    for (const Prepared& prepared : prepared_) {
      GEOSPreparedGeom_destroy_r(geos_, prepared.geometry);
    }
    for (GEOSGeometry* geometry : geometries_) {
      GEOSGeom_destroy_r(geos_, geometry);
    }
    for (GEOSGeometry* point : points_) {
      GEOSGeom_destroy_r(geos_, point);
    }
    GEOS_finish_r(geos_);
  }

  void run(const Cloud& cloud, std::size_t size, std::uint64_t* masks) const override {
    for (std::size_t i = 0; i < size; ++i) {
      const auto z = static_cast<double>(cloud.z[i]);
      std::uint64_t mask = 0;
      for (const Prepared& prepared : prepared_) {
        if (z >= prepared.zMin && z <= prepared.zMax &&
            GEOSPreparedContains_r(geos_, prepared.geometry, points_[i]) == 1) {
          mask |= prepared.bit;
        }
      }
      masks[i] = mask;
    }
  }

 private:
  struct Prepared {
    const GEOSPreparedGeometry* geometry;
    double zMin;
    double zMax;
    std::uint64_t bit;
  };

  GEOSGeometry* polygonOf(const Zone& shape) const {
    std::vector<Point> ring;
    dynamic_cast<const Polygon&>(shape).getPolygon(ring);
    ring.push_back(ring.front());
    GEOSCoordSequence* vertices = GEOSCoordSeq_create_r(geos_, static_cast<unsigned>(ring.size()), 2);
    for (unsigned i = 0; i < ring.size(); ++i) {
      GEOSCoordSeq_setXY_r(geos_, vertices, i, ring[i].x(), ring[i].y());
    }
    return GEOSGeom_createPolygon_r(geos_, GEOSGeom_createLinearRing_r(geos_, vertices), nullptr, 0);
  }

  GEOSContextHandle_t geos_ = GEOS_init_r();
  std::vector<GEOSGeometry*> geometries_;
  std::vector<Prepared> prepared_;
  std::vector<GEOSGeometry*> points_;
};

}  // namespace

std::unique_ptr<Contestant> perZoneCalls(const ZoneDetector& detector) {
  return std::make_unique<PerZoneCalls>(detector);
}

std::unique_ptr<Contestant> boxedCalls(const ZoneDetector& detector) {
  return std::make_unique<BoxedCalls>(detector);
}

std::unique_ptr<Contestant> preparedGeometries(const ZoneDetector& detector, const Cloud& cloud) {
  return std::make_unique<PreparedGeometries>(detector, cloud);
}

}  // namespace orvantis::benchmarks
