#include "monitor/ObjectContestants.h"

#include <algorithm>

// Without this GEOS declares functions that take no context and hide their errors.
#define GEOS_USE_ONLY_R_API
#include <geos_c.h>

#include <filter/detection/Polygon.h>
#include <filter/detection/Sector.h>

#include "monitor/SectorContact.h"

namespace orvantis::benchmarks {
namespace {

using namespace filter::detection;
using filter::monitor::TrackedObject;

class ByZones : public ObjectContestant {
 public:
  ByZones(const ZoneDetector& detector, const std::vector<Objects>& frames) : frames_(frames) {
    for (int i = 0; i < 24; ++i) {
      zones_.push_back(detector.getZone(i / 3, i % 3));
    }
  }

  void run(std::size_t frame, std::vector<std::uint32_t>& masks) const override {
    masks.clear();
    for (const TrackedObject& object : frames_[frame]) {
      std::uint32_t mask = 0;
      for (std::size_t slot = 0; slot < zones_.size(); ++slot) {
        const Zone3dBase& zone = *zones_[slot];
        if (zone.getZMax() >= object.zMin && object.zMax >= zone.getZMin() &&
            holds(*zone.getZone2d(), object)) {
          mask |= std::uint32_t{1} << slot;
        }
      }
      masks.push_back(mask);
    }
  }

 private:
  virtual bool holds(const Zone& zone, const TrackedObject& object) const = 0;

  const std::vector<Objects>& frames_;
  std::vector<std::shared_ptr<Zone3dBase>> zones_;
};

class ZoneByZone : public ByZones {
  using ByZones::ByZones;
  bool holds(const Zone& zone, const TrackedObject& object) const override {
    const core::PlanarPolygon& footprint = object.footprint.polygon();
    if (const auto* sector = dynamic_cast<const Sector*>(&zone)) {
      return filter::monitor::shareAnyPoint(*sector, footprint);
    }
    return zone.within(footprint) || zone.intersects(footprint);
  }
};

class CornersOnly : public ByZones {
  using ByZones::ByZones;
  bool holds(const Zone& zone, const TrackedObject& object) const override {
    const auto& ring = object.footprint.polygon().outer();
    return std::any_of(ring.begin(), ring.begin() + 4, [&](const core::PlanarPoint& corner) {
      return zone.within(Point(corner.x(), corner.y()));
    });
  }
};

class PreparedGeometries : public ObjectContestant {
 public:
  PreparedGeometries(const ZoneDetector& detector, const std::vector<Objects>& frames) {
    for (int i = 0; i < 24; ++i) {
      std::vector<Point> ring;
      dynamic_cast<const Polygon&>(*detector.getZone(i / 3, i % 3)->getZone2d()).getPolygon(ring);
      ring.push_back(ring.front());
      zones_.push_back(polygonOf(ring));
      prepared_.push_back(GEOSPrepare_r(geos_, zones_.back()));
    }
    for (const Objects& frame : frames) {
      std::vector<GEOSGeometry*>& footprints = footprints_.emplace_back();
      for (const TrackedObject& object : frame) {
        std::vector<Point> ring;
        for (const core::PlanarPoint& corner : object.footprint.polygon().outer()) {
          ring.emplace_back(corner.x(), corner.y());
        }
        footprints.push_back(polygonOf(ring));
      }
    }
  }
  ~PreparedGeometries() override {
    for (const GEOSPreparedGeometry* prepared : prepared_) {
      GEOSPreparedGeom_destroy_r(geos_, prepared);
    }
    for (GEOSGeometry* zone : zones_) {
      GEOSGeom_destroy_r(geos_, zone);
    }
    for (const std::vector<GEOSGeometry*>& frame : footprints_) {
      for (GEOSGeometry* footprint : frame) {
        GEOSGeom_destroy_r(geos_, footprint);
      }
    }
    GEOS_finish_r(geos_);
  }

  void run(std::size_t frame, std::vector<std::uint32_t>& masks) const override {
    masks.clear();
    for (const GEOSGeometry* footprint : footprints_[frame]) {
      std::uint32_t mask = 0;
      for (std::size_t slot = 0; slot < prepared_.size(); ++slot) {
        if (GEOSPreparedIntersects_r(geos_, prepared_[slot], footprint) == 1) {
          mask |= std::uint32_t{1} << slot;
        }
      }
      masks.push_back(mask);
    }
  }

 private:
  // @param ring with the first vertex repeated at the end
  GEOSGeometry* polygonOf(const std::vector<Point>& ring) const {
    GEOSCoordSequence* vertices = GEOSCoordSeq_create_r(geos_, static_cast<unsigned>(ring.size()), 2);
    for (unsigned i = 0; i < ring.size(); ++i) {
      GEOSCoordSeq_setXY_r(geos_, vertices, i, ring[i].x(), ring[i].y());
    }
    return GEOSGeom_createPolygon_r(geos_, GEOSGeom_createLinearRing_r(geos_, vertices), nullptr, 0);
  }

  GEOSContextHandle_t geos_ = GEOS_init_r();
  std::vector<GEOSGeometry*> zones_;
  std::vector<const GEOSPreparedGeometry*> prepared_;
  std::vector<std::vector<GEOSGeometry*>> footprints_;
};

}  // namespace

std::unique_ptr<ObjectContestant> zoneByZone(const ZoneDetector& detector,
                                             const std::vector<Objects>& frames) {
  return std::make_unique<ZoneByZone>(detector, frames);
}

std::unique_ptr<ObjectContestant> cornersOnly(const ZoneDetector& detector,
                                              const std::vector<Objects>& frames) {
  return std::make_unique<CornersOnly>(detector, frames);
}

std::unique_ptr<ObjectContestant> preparedGeometries(const ZoneDetector& detector,
                                                     const std::vector<Objects>& frames) {
  return std::make_unique<PreparedGeometries>(detector, frames);
}

}  // namespace orvantis::benchmarks
