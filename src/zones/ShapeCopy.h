#pragma once

#include <memory>
#include <stdexcept>
#include <typeinfo>

#include <filter/detection/Polygon.h>
#include <filter/detection/Rectangle.h>
#include <filter/detection/Sector.h>

namespace orvantis::filter::detection {

/// A copy that no later change of the shape reaches. Inline, because the libraries that need it do not see
/// the hidden symbols of this one.
///
/// Polygon, Rectangle and Sector are copied by their copy constructors, because Sector::makeCopy drops the
/// origin. A host's own shape, also one that is derived from these, can only be copied by its `makeCopy`.
/// @throws std::invalid_argument when `makeCopy` gives null, and what it throws
inline std::shared_ptr<const Zone> exactCopy(const Zone& shape) {
  const std::type_info& type = typeid(shape);
  if (type == typeid(Polygon)) {
    return std::make_shared<Polygon>(static_cast<const Polygon&>(shape));
  }
  if (type == typeid(Rectangle)) {
    return std::make_shared<Rectangle>(static_cast<const Rectangle&>(shape));
  }
  if (type == typeid(Sector)) {
    return std::make_shared<Sector>(static_cast<const Sector&>(shape));
  }
  std::shared_ptr<const Zone> copy = shape.makeCopy();
  if (!copy) {
    throw std::invalid_argument("The shape of zone \"" + shape.name() + "\" gives no copy of itself");
  }
  return copy;
}

}  // namespace orvantis::filter::detection
