#include <cstdint>

#include <filter/detection/Rectangle.h>
#include <settings/SettingsManager.h>

#include "trigonometry/Trigonometry.h"
#include "zones/PointList.h"

namespace orvantis::filter::detection {

const std::string Rectangle::TYPE_NAME = "rectangle";

Rectangle::Rectangle(const std::string& name, const std::vector<Point>& corners, double rotation)
    : Polygon(name) {
  if (corners.size() != 2) {
    logger_.errorStream().write("Invalid rectangle inputs of corners size ",
                                static_cast<std::uint64_t>(corners.size()));
    return;
  }
  firstCorner_ = corners[0];
  secondCorner_ = corners[1];
  rotation_ = rotation;
  setPolygonCorners();
}

Rectangle::Rectangle(const std::string& name, SettingsManager& settings) : Polygon(name) {
  Rectangle::load(settings);
}

Rectangle::~Rectangle() = default;

void Rectangle::getRectangle(std::vector<Point>& corners, double& rotation) const {
  corners.push_back(firstCorner_);
  corners.push_back(secondCorner_);
  rotation = rotation_;
}

std::shared_ptr<Zone> Rectangle::makeCopy() const {
  return std::make_shared<Rectangle>(name(), std::vector<Point>{firstCorner_, secondCorner_}, rotation_);
}

void Rectangle::save(SettingsManager& settings) const {
  settings.put<std::string>("shape", Rectangle::TYPE_NAME);
  settings.pathPush("Rectangle");
  settings.put<double>("rotation", rotation_);
  savePoint(settings, 0, firstCorner_);
  savePoint(settings, 1, secondCorner_);
  settings.pathPop();
}

void Rectangle::load(SettingsManager& settings) {
  settings.pathPush("Rectangle");
  polygon_.outer().clear();
  rotation_ = settings.get<double>("rotation");
  const std::int32_t count = settings.getChildCount("Point");
  if (count != 2) {
    // The path stays inside "Rectangle": callers rely on finding it where the entry is wrong.
    logger_.errorStream().write("Rectangle defined from file must have two points but has ", count);
    return;
  }
  firstCorner_ = loadPoint(settings, 0);
  secondCorner_ = loadPoint(settings, 1);
  setPolygonCorners();
  settings.pathPop();
}

const std::string& Rectangle::type() const {
  return TYPE_NAME;
}

void Rectangle::setPolygonCorners() {
  constexpr double radiansPerDegree = 0.017453292519943295;
  const double centreX = (firstCorner_.x() + secondCorner_.x()) * 0.5;
  const double centreY = (firstCorner_.y() + secondCorner_.y()) * 0.5;
  const double angle = rotation_ * radiansPerDegree;
  const double cosine = trigonometry::cosine(angle);
  const double sine = trigonometry::sine(angle);
  const auto turned = [&](double x, double y) {
    const double dx = x - centreX;
    const double dy = y - centreY;
    return core::PlanarPoint(centreX + dx * cosine - dy * sine, centreY + dx * sine + dy * cosine);
  };
  polygon_.inners().clear();
  polygon_.outer() = {turned(firstCorner_.x(), firstCorner_.y()), turned(firstCorner_.x(), secondCorner_.y()),
                      turned(secondCorner_.x(), secondCorner_.y()),
                      turned(secondCorner_.x(), firstCorner_.y())};
}

}  // namespace orvantis::filter::detection
