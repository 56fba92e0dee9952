#include <boost/property_tree/ptree.hpp>

#include <filter/detection/CounterLine.h>

#include "counter/EndPoints.h"
#include "text/ValueText.h"

namespace orvantis::filter::detection {
namespace {

using boost::property_tree::ptree;

// Converts as property_tree does, but in the same way in every process locale and on every system.
constexpr toolkit::ValueText<double> numbers;

ptree toTree(const core::PlanarPoint& point) {
  ptree tree;
  tree.add("x", point.x(), numbers);
  tree.add("y", point.y(), numbers);
  return tree;
}

core::PlanarPoint toPoint(const ptree& tree) {
  const auto x = tree.get<double>("x", numbers);
  const auto y = tree.get<double>("y", numbers);
  return {x, y};
}

}  // namespace

void CounterLine::serialize(ptree& tree) const {
  const auto [first, second] = endPoints(points_);
  tree.add("name", name_);
  tree.add_child("first", toTree(first));
  tree.add_child("second", toTree(second));
}

void CounterLine::deserialize(const ptree& tree) {
  name_ = tree.get<std::string>("name");
  const core::PlanarPoint first = toPoint(tree.get_child("first"));
  const core::PlanarPoint second = toPoint(tree.get_child("second"));
  points_ = {first, second};
}

}  // namespace orvantis::filter::detection
