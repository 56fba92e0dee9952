#include <utility>

#include <filter/detection/Polygon.h>
#include <filter/detection/Rectangle.h>
#include <filter/detection/Sector.h>
#include <filter/detection/Zone3dBase.h>
#include <logging/LoggingManager.h>
#include <settings/SettingsManager.h>

#include "text/LowerCase.h"

namespace orvantis::filter::detection {

const float Zone3dBase::DEFAULT_Z_MIN = 0.0F;
const float Zone3dBase::DEFAULT_Z_MAX = 20.0F;

Zone3dBase::Zone3dBase(std::shared_ptr<Zone> zone, double zMin, double zMax)
    : zone2d_(std::move(zone)), zMin_(zMin), zMax_(zMax) {
  logger_ = LoggingManager::getInstance().getLogger("Zone3dBase");
}

Zone3dBase::~Zone3dBase() = default;

void Zone3dBase::setZone2d(std::shared_ptr<Zone> zone) noexcept {
  if (zone) {
    zone2d_ = std::move(zone);
  }
}

std::string Zone3dBase::getName() const {
  return zone2d_ ? zone2d_->name() : std::string();
}

void Zone3dBase::setName(const std::string& name) {
  if (zone2d_) {
    zone2d_->setName(name);
  }
}

bool Zone3dBase::within(double x, double y, double z) const {
  return z >= zMin_ && z <= zMax_ && zone2d_ && zone2d_->within(Point(x, y));
}

// The public signatures take the outline by value.
// NOLINTBEGIN(performance-unnecessary-value-param)
bool Zone3dBase::within(polygon outline, float zMin, float zMax) const {
  return containsHeights(zMin, zMax) && zone2d_ && zone2d_->within(outline);
}

bool Zone3dBase::intersects(polygon outline, float zMin, float zMax) const {
  const bool touches = zMax_ >= static_cast<double>(zMin) && static_cast<double>(zMax) >= zMin_;
  return touches && zone2d_ && zone2d_->intersects(outline);
}

bool Zone3dBase::overlaps(polygon outline, float zMin, float zMax) const {
  return containsHeights(zMin, zMax) && zone2d_ && zone2d_->overlaps(outline);
}
// NOLINTEND(performance-unnecessary-value-param)

void Zone3dBase::load(SettingsManager& settings) {
  loadShape(settings);
  zMin_ = settings.get<double>("zMin", DEFAULT_Z_MIN);
  zMax_ = settings.get<double>("zMax", DEFAULT_Z_MAX);
}

void Zone3dBase::save(SettingsManager& settings) {
  if (!zone2d_) {
    return;
  }
  settings.put<std::string>("name", zone2d_->name());
  zone2d_->save(settings);
  settings.put<double>("zMin", zMin_);
  settings.put<double>("zMax", zMax_);
}

void Zone3dBase::loadShape(SettingsManager& settings) {
  const auto name = settings.get<std::string>("name");
  const std::string shape = toolkit::lowerCase(settings.get<std::string>("shape"));
  if (shape == Polygon::TYPE_NAME) {
    zone2d_ = std::make_shared<Polygon>(name, settings);
  } else if (shape == Sector::TYPE_NAME) {
    zone2d_ = std::make_shared<Sector>(name, settings);
  } else if (shape == Rectangle::TYPE_NAME) {
    zone2d_ = std::make_shared<Rectangle>(name, settings);
  } else {
    logger_.warnStream().write("Cannot load zone with invalid shape '", shape, "'");
  }
}

bool Zone3dBase::containsHeights(double zMin, double zMax) const {
  return zMin >= zMin_ && zMax_ >= zMin && zMax >= zMin_ && zMax_ >= zMax;
}

}  // namespace orvantis::filter::detection
