#include <algorithm>
#include <cmath>
#include <cstdint>

#include <filter/detection/Sector.h>
#include <settings/SettingsManager.h>

namespace orvantis::filter::detection {
namespace {

constexpr double pi = 3.141592653589793;
constexpr double twoPi = 6.283185307179586;
constexpr double wholeDiscTolerance = 0.0001;

double normalised(double angle) {
  const double turns = (angle + pi) / twoPi;
  return (turns - std::floor(turns)) * twoPi - pi;
}

bool isWholeDisc(double minAngle, double maxAngle) {
  return std::abs(minAngle - maxAngle) < wholeDiscTolerance;
}

}  // namespace

const std::string Sector::TYPE_NAME = "sector";

Sector::Sector(const std::string& name, double minAngle, double maxAngle, double radius)
    : Sector(name, minAngle, maxAngle, radius, Point(0.0, 0.0)) {}

Sector::Sector(const std::string& name, double minAngle, double maxAngle, double radius, const Point& origin)
    : Zone(name), radius_(radius), origin_(origin) {
  setAngles(minAngle, maxAngle);
}

Sector::Sector(const std::string& name, SettingsManager& settings) : Zone(name) {
  Sector::load(settings);
}

Sector::~Sector() = default;

void Sector::setOrigin(double x, double y) {
  origin_.set(x, y);
}

void Sector::getSector(double& minAngle, double& maxAngle, double& radius) const {
  minAngle = minAngle_;
  maxAngle = maxAngle_;
  radius = radius_;
}

std::shared_ptr<Zone> Sector::makeCopy() const {
  return std::make_shared<Sector>(name(), minAngle_, maxAngle_, radius_);
}

bool Sector::within(const polygon& area) const {
  const auto& ring = area.outer();
  return std::all_of(ring.begin(), ring.end(), [this](const core::PlanarPoint& vertex) {
    return within(Point(vertex.x(), vertex.y()));
  });
}

bool Sector::within(const Point& point) const {
  const double dx = point.x() - origin_.x();
  const double dy = point.y() - origin_.y();
  if (dx * dx + dy * dy > radius_ * radius_) {
    return false;
  }
  if (isWholeDisc(minAngle_, maxAngle_)) {
    return true;
  }
  // Adding zero makes a negative zero positive: the bearing of the origin is 0 and never pi.
  const double bearing = std::atan2(dy, dx + 0.0);
  const double lower = std::min(minAngle_, maxAngle_);
  const double upper = std::max(minAngle_, maxAngle_);
  const bool isBetween = lower <= bearing && bearing <= upper;
  return maxAngle_ > minAngle_ ? isBetween : !isBetween;
}

bool Sector::intersects(const polygon& area) const {
  std::uint16_t inside = 0;
  std::uint16_t outside = 0;
  for (const core::PlanarPoint& vertex : area.outer()) {
    ++(within(Point(vertex.x(), vertex.y())) ? inside : outside);
  }
  return inside != 0 && outside != 0;
}

bool Sector::overlaps(const polygon& area) const {
  return intersects(area);
}

double Sector::area() const {
  return std::abs(maxAngle_ - minAngle_) * 0.5 * radius_ * radius_;
}

void Sector::save(SettingsManager& settings) const {
  settings.put<std::string>("shape", Sector::TYPE_NAME);
  settings.pathPush("Sector");
  settings.put<double>("minAngle", minAngle_);
  settings.put<double>("maxAngle", isWholeDisc(minAngle_, maxAngle_) ? maxAngle_ + twoPi : maxAngle_);
  settings.put<double>("radius", radius_);
  settings.pathPop();
}

void Sector::load(SettingsManager& settings) {
  settings.pathPush("Sector");
  const auto maxAngle = settings.get<double>("maxAngle");
  const auto minAngle = settings.get<double>("minAngle");
  setAngles(minAngle, maxAngle);
  radius_ = settings.get<double>("radius");
  settings.pathPop();
}

const std::string& Sector::type() const {
  return TYPE_NAME;
}

void Sector::setAngles(double minAngle, double maxAngle) {
  minAngle_ = normalised(minAngle);
  maxAngle_ = normalised(maxAngle);
}

}  // namespace orvantis::filter::detection
