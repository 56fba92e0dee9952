#include "drawing/PlanLabels.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "drawing/Palette.h"
#include "drawing/PlanAreas.h"
#include "text/Text.h"

namespace orvantis::toolkit {
namespace {

struct Label {
  std::string text;
  Pixel anchor;
  const PixelRing* own;  ///< null for the label of a line
  std::string_view colour;
  bool italic;
};

Label labelOf(const PlanContent::Area& area, const PixelRing& own, const std::vector<PixelRing>& rings) {
  std::vector<const PixelRing*> others;
  for (const PixelRing& ring : rings) {
    if (&ring != &own && !ring.empty()) {
      others.push_back(&ring);
    }
  }
  return {area.name, visualCentre(own, others), &own, colourOf(area), !area.field.has_value()};
}

// The label is near the head of the line, where fewer lines cross.
Label labelOf(const PlanContent::Line& line, const Viewport& view) {
  const Pixel from = view.toPixel(line.first);
  const Pixel to = view.toPixel(line.second);
  const Pixel anchor{from.x + 0.75 * (to.x - from.x), from.y + 0.75 * (to.y - from.y)};
  return {line.name, anchor, nullptr, palette::counterLine, false};
}

// A thin line from a place inside the zone to its name outside.
SvgElement pointer(const Pixel& from, const PixelBox& name, std::string_view colour) {
  const Pixel end{std::clamp(from.x, name.left, name.left + name.width),
                  std::clamp(from.y, name.top, name.top + name.height)};
  SvgElement group("g");
  group.add(path("M" + at(from) + "L" + at(end)).set("stroke", colour).set("stroke-width", 1))
      .add(circle(from, 2.2).set("fill", colour));
  return group;
}

void drawLabel(const Label& label, LabelPlacer& placer, SvgElement& group) {
  constexpr std::size_t longestLabel = 32;
  constexpr double characterWidth = 7.6;  // of a wide sans-serif at 13 pixels
  const std::string text = shortened(label.text, longestLabel);
  const double width = characterWidth * static_cast<double>(displayWidth(text)) + 6.0;
  const auto box = text.empty() ? std::nullopt : placer.place(label.anchor, width, 17.0, label.own);
  if (!box) {
    return;
  }
  const Pixel centre = box->centre();
  if (label.own != nullptr && !isInside(*label.own, centre)) {
    group.add(pointer(label.anchor, *box, label.colour));
  }
  SvgElement name = words({centre.x, centre.y + 4.5}, text);
  name.set("fill", label.colour).set("font-weight", label.italic ? "normal" : "bold");
  if (label.italic) {
    name.set("font-style", "italic");
  }
  // A pale outline keeps the name legible over a scan.
  name.set("stroke", palette::paper).set("stroke-width", 3.5).set("stroke-opacity", 0.85, 2);
  group.add(name.set("stroke-linejoin", "round").set("paint-order", "stroke").set("text-anchor", "middle"));
}

}  // namespace

SvgElement planLabels(const PlanContent& content, const std::vector<PixelRing>& rings, const Viewport& view,
                      LabelPlacer& placer) {
  std::vector<Label> labels;
  for (std::size_t i = 0; i < rings.size(); ++i) {
    if (!rings[i].empty()) {
      placer.avoidRing(rings[i]);
      labels.push_back(labelOf(content.areas[i], rings[i], rings));
    }
  }
  for (const PlanContent::Line& line : content.lines) {
    labels.push_back(labelOf(line, view));
  }
  SvgElement group("g");
  for (const Label& label : labels) {
    drawLabel(label, placer, group);
  }
  return group;
}

}  // namespace orvantis::toolkit
