#include <utility>

#include <filter/detection/Zone.h>

namespace orvantis::filter::detection {

Zone::Zone(const std::string& name) : name_(name) {}

Zone::~Zone() = default;

void Zone::setName(std::string name) noexcept {
  name_ = std::move(name);
}

}  // namespace orvantis::filter::detection
