#include "drawing/Svg.h"

#include <algorithm>
#include <cmath>

#include "text/Number.h"
#include "text/Text.h"

namespace orvantis::toolkit {

std::string_view fieldColour(int field) {
  static constexpr std::array<std::string_view, 8> colours = {"#0072b2", "#d55e00", "#009e73", "#aa4499",
                                                              "#b8860b", "#56a0d3", "#7a5195", "#8c564b"};
  return colours[static_cast<std::size_t>(field) % colours.size()];
}

std::string px(double value) {
  return toText(value, 1);
}

std::string at(const Pixel& p) {
  return px(p.x) + " " + px(p.y);
}

std::string shortened(const std::string& text, std::size_t characters) {
  if (displayWidth(text) <= characters) {
    return text;
  }
  std::size_t end = 0;
  while (displayWidth(std::string_view(text).substr(0, end + 1)) < characters) {
    ++end;
  }
  return text.substr(0, end) + "…";
}

double niceStep(double atLeast) {
  const double power = std::pow(10.0, std::floor(std::log10(atLeast)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (factor * power >= atLeast) {
      return factor * power;
    }
  }
  return 10.0 * power;
}

int decimalsOf(double step) {
  return std::max(0, -static_cast<int>(std::floor(std::log10(step) + 1e-9)));
}

}  // namespace orvantis::toolkit
