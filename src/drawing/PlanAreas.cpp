#include "drawing/PlanAreas.h"

#include <cstddef>

#include "drawing/Palette.h"

namespace orvantis::toolkit {
namespace {

constexpr double borderWidth = 1.8;

std::string dataOf(const PixelRing& ring) {
  std::string data;
  for (const Pixel& p : ring) {
    data += (data.empty() ? "M" : "L") + at(p);
  }
  return data + "z";
}

}  // namespace

std::string_view colourOf(const PlanContent::Area& area) {
  return area.field ? palette::field(*area.field) : palette::exclusion;
}

SvgElement exclusionHatch(const std::string& ids) {
  return SvgElement("pattern")
      .set("id", ids + "hatch")
      .set("width", 7)
      .set("height", 7)
      .set("patternUnits", "userSpaceOnUse")
      .set("patternTransform", "rotate(45)")
      .add(path("M0 0v7")
               .set("stroke", palette::exclusion)
               .set("stroke-width", 2)
               .set("stroke-opacity", 0.55, 2));
}

void drawAsZone(SvgElement& shape, std::string_view colour) {
  shape.set("fill", colour)
      .set("fill-opacity", 0.16, 2)
      .set("stroke", colour)
      .set("stroke-width", borderWidth);
}

void drawAsExclusion(SvgElement& shape, const std::string& ids) {
  shape.set("fill", "url(#" + ids + "hatch)")
      .set("stroke", palette::exclusion)
      .set("stroke-width", borderWidth)
      .set("stroke-dasharray", "5 3");
}

SvgElement planAreas(const PlanContent& content, const std::vector<PixelRing>& rings) {
  SvgElement group("g");
  group.set("stroke-linejoin", "round");
  for (const bool isExclusion : {false, true}) {
    for (std::size_t i = 0; i < rings.size(); ++i) {
      const PlanContent::Area& area = content.areas[i];
      if (rings[i].empty() || isExclusion == area.field.has_value()) {
        continue;
      }
      SvgElement outline = path(dataOf(rings[i]));
      if (isExclusion) {
        drawAsExclusion(outline, content.idPrefix);
      } else {
        drawAsZone(outline, colourOf(area));
      }
      group.add(outline.addTitle(area.name));
    }
  }
  return group;
}

}  // namespace orvantis::toolkit
