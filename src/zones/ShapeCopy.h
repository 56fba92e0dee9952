#pragma once

#include <memory>
#include <stdexcept>
#include <typeinfo>

#include <filter/detection/Polygon.h>
#include <filter/detection/Rectangle.h>
#include <filter/detection/Sector.h>

namespace orvantis::filter::detection {

/// A copy that no later change of the shape reaches. In a header alone, because the libraries that need it
/// do not see the symbols of this one's layers.
///
/// The shapes of this project copy themselves whole with their copy constructors, where Sector::makeCopy
/// drops the origin. A host's own shape, derived from one of them or not, can only be asked for a copy.
/// @throws std::invalid_argument when the shape gives no copy of itself, and what its `makeCopy` throws
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
