#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include <filter/detection/Sector.h>
#include <settings/SettingsManager.h>

#include "trigonometry/Trigonometry.h"

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

void Sector::setOrigin(double x, double y) noexcept {
  origin_.set(x, y);
}

void Sector::getSector(double& minAngle, double& maxAngle, double& radius) const noexcept {
  minAngle = minAngle_;
  maxAngle = maxAngle_;
  radius = radius_;
}

std::shared_ptr<Zone> Sector::makeCopy() const {
  // Without the origin, which documents do not hold either; exactCopy keeps it.
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
  return isBetweenBearings(dx, dy);
}

bool Sector::isBetweenBearings(double dx, double dy) const {
  // How far to the left of each bearing the point is. The directions and the products are rounded to 2^-53
  // of their size, or to a multiple of the least double, and the bearing itself to 2^-52. A point that is
  // farther from both bearings than a few such errors is decided here, without computing its bearing.
  const double leftOfMin = minDirection_.x() * dy - minDirection_.y() * dx;
  const double leftOfMax = maxDirection_.x() * dy - maxDirection_.y() * dx;
  const double doubt = (std::abs(dx) + std::abs(dy)) * 0x1p-48 + std::numeric_limits<double>::min();
  if (std::abs(leftOfMin) > doubt && std::abs(leftOfMax) > doubt) {
    const double opening = maxAngle_ - minAngle_ + (maxAngle_ > minAngle_ ? 0.0 : twoPi);
    return opening > pi ? leftOfMin > 0.0 || leftOfMax < 0.0 : leftOfMin > 0.0 && leftOfMax < 0.0;
  }
  // Adding zero makes a negative zero positive: the bearing of the origin is 0 and never pi.
  const double bearing = trigonometry::bearing(dy, dx + 0.0);
  const double lower = std::min(minAngle_, maxAngle_);
  const double upper = std::max(minAngle_, maxAngle_);
  const bool isBetween = lower <= bearing && bearing <= upper;
  return maxAngle_ > minAngle_ ? isBetween : !isBetween;
}

bool Sector::intersects(const polygon& area) const {
  // 16 bits, because hosts rely on the answers: with a multiple of 65536 vertices on one side, the outline
  // counts as having none there.
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
  minDirection_.set(trigonometry::cosine(minAngle_), trigonometry::sine(minAngle_));
  maxDirection_.set(trigonometry::cosine(maxAngle_), trigonometry::sine(maxAngle_));
}

}  // namespace orvantis::filter::detection
