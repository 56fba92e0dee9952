#include "drawing/PlanGrid.h"

#include <cmath>
#include <string>

#include "drawing/Palette.h"
#include "drawing/Ticks.h"
#include "text/Number.h"

namespace orvantis::toolkit {

SvgElement planGrid(const Viewport& view) {
  const PixelBox box = view.box();
  const double below = box.top + box.height;
  constexpr double betweenTicks = 70.0;  // pixels
  const double step = niceStep(betweenTicks / view.scale());
  const int decimals = decimalsOf(step);
  std::string lines;
  SvgElement numbers("g");
  numbers.set("font-size", 12).set("fill", palette::paleInk);
  for (double i = std::ceil(view.left() / step); i * step <= view.right(); ++i) {
    const double x = view.toPixel({i * step, 0.0}).x;
    lines += "M" + at({x, box.top}) + "v" + px(box.height);
    numbers.add(words({x, below + 18.0}, toText(i * step, decimals)).set("text-anchor", "middle"));
  }
  for (double i = std::ceil(view.bottom() / step); i * step <= view.top(); ++i) {
    const double y = view.toPixel({0.0, i * step}).y;
    lines += "M" + at({box.left, y}) + "h" + px(box.width);
    numbers.add(words({box.left - 8.0, y + 4.5}, toText(i * step, decimals)).set("text-anchor", "end"));
  }
  numbers.add(words({box.centre().x, below + 40.0}, "x in metres").set("text-anchor", "middle"));
  numbers.add(SvgElement("text")
                  .set("transform", "translate(16 " + px(box.centre().y) + ") rotate(-90)")
                  .set("text-anchor", "middle")
                  .addText("y in metres"));
  SvgElement group("g");
  group.add(rectangle(box).set("fill", palette::plane))
      .add(path(lines).set("stroke", palette::grid).set("fill", "none"))
      .add(numbers);
  return group;
}

}  // namespace orvantis::toolkit
