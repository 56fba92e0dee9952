#include "drawing/PlanMarks.h"

#include "drawing/Palette.h"
#include "trigonometry/Length.h"

namespace orvantis::toolkit {
namespace {

constexpr double leftSideDistance = 15.0;

SvgElement leftSideMark(const Pixel& middle, const Pixel& mark) {
  SvgElement group("g");
  group.set("stroke", palette::counterLine)
      .add(path("M" + at(middle) + "L" + at(mark)).set("stroke-width", 1.4))
      .add(circle(mark, 7.5).set("fill", palette::paper).set("stroke-width", 1.3))
      .add(words({mark.x, mark.y + 3.6}, "L")
               .set("font-size", 10)
               .set("font-weight", "bold")
               .set("fill", palette::counterLine)
               .set("stroke", "none")
               .set("text-anchor", "middle"));
  return group;
}

}  // namespace

SvgElement crossingMark(const Pixel& middle, std::string_view title, bool isSmall) {
  const std::string size = isSmall ? "2.2" : "6";
  const std::string diamond = "M" + at({middle.x, middle.y - (isSmall ? 2.2 : 6.0)}) + "l" + size + " " +
                              size + "l-" + size + " " + size + "l-" + size + " -" + size + "z";
  return path(diamond)
      .set("fill", palette::crossing)
      .set("stroke", palette::counterLine)
      .set("stroke-width", isSmall ? 0.7 : 1.6)
      .addTitle(title);
}

SvgElement originMark(const Pixel& middle) {
  SvgElement group("g");
  group.set("stroke", palette::ink)
      .set("stroke-width", 1.6)
      .add(path("M" + at({middle.x - 7.0, middle.y}) + "h14M" + at({middle.x, middle.y - 7.0}) + "v14"))
      .add(circle(middle, 3.6).set("fill", palette::paper));
  return group;
}

SvgElement counterLineMark(const Pixel& from, const Pixel& to, const std::string& ids) {
  SvgElement group("g");
  group
      .add(path("M" + at(from) + "L" + at(to))
               .set("stroke", palette::counterLine)
               .set("stroke-width", 2.6)
               .set("fill", "none")
               .set("marker-end", "url(#" + ids + "arrow)"))
      .add(circle(from, 3.4).set("fill", palette::counterLine));
  if (from.x != to.x || from.y != to.y) {
    const Pixel middle{(from.x + to.x) / 2.0, (from.y + to.y) / 2.0};
    group.add(leftSideMark(middle, leftSideOf(from, to)));
  }
  return group;
}

Pixel leftSideOf(const Pixel& from, const Pixel& to) {
  const double length = trigonometry::length(to.x - from.x, to.y - from.y);
  if (length == 0.0) {
    return to;
  }
  // To the left as seen along the line. The y axis of pixels points down, so a left turn of the plane is a
  // right turn here.
  const Pixel left{(to.y - from.y) / length, -(to.x - from.x) / length};
  return {(from.x + to.x) / 2.0 + leftSideDistance * left.x,
          (from.y + to.y) / 2.0 + leftSideDistance * left.y};
}

SvgElement arrowHead(const std::string& id, std::string_view colour, double size) {
  return SvgElement("marker")
      .set("id", id)
      .set("viewBox", "0 0 10 10")
      .set("refX", 8)
      .set("refY", 5)
      .set("markerWidth", size)
      .set("markerHeight", size)
      .set("markerUnits", "userSpaceOnUse")
      .set("orient", "auto")
      .add(path("M0 0L10 5L0 10z").set("fill", colour));
}

}  // namespace orvantis::toolkit
