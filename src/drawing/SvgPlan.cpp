#include "drawing/SvgPlan.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "drawing/LabelPlacer.h"
#include "drawing/Palette.h"
#include "drawing/PictureId.h"
#include "drawing/PlanAreas.h"
#include "drawing/PlanGrid.h"
#include "drawing/PlanLabels.h"
#include "drawing/PlanLegend.h"
#include "drawing/PlanMarks.h"
#include "drawing/PlanScan.h"
#include "drawing/PlanTracks.h"
#include "drawing/SvgElement.h"
#include "drawing/Viewport.h"
#include "text/Text.h"

namespace orvantis::toolkit {
namespace {

constexpr double marginBottom = 52.0;
constexpr double legendWidth = 250.0;
constexpr double smallestTimeline = 520.0;

class Drawing {
 public:
  explicit Drawing(const PlanContent& content)
      : content_(content),
        view_(viewportFor(content)),
        placer_(inset(view_.box(), 4.0)),
        tracks_(content.tracks, content.idPrefix) {
    for (const PlanContent::Area& area : content.areas) {
      rings_.push_back(view_.toPixels(area.ring));
    }
  }

  std::string draw() {
    const PixelBox box = view_.box();
    SvgElement body("g");
    body.add(planGrid(view_)).add(plan()).add(planLabels(content_, rings_, view_, placer_));
    body.add(rectangle(box).set("fill", "none").set("stroke", palette::frame));
    const PlanLegend legend = planLegend(content_, view_, tracks_);
    body.add(legend.body);
    double width = marginLeft + box.width + 24.0 + legendWidth;
    double height = std::max(marginTop + box.height + marginBottom, legend.bottom + 16.0);
    if (content_.timeline) {
      const double rowWidth = std::max(box.width, smallestTimeline);
      const SvgPiece timeline = drawTimeline(*content_.timeline, marginLeft, height + 8.0, rowWidth);
      body.add(timeline.body);
      width = std::max(width, marginLeft + rowWidth + 24.0 + legendWidth);
      height += 8.0 + timeline.height;
    }
    return page(body, width, height).str() + "\n";
  }

 private:
  static PixelBox inset(const PixelBox& box, double by) {
    return {box.left + by, box.top + by, box.width - 2.0 * by, box.height - 2.0 * by};
  }

  SvgElement page(const SvgElement& body, double width, double height) const {
    constexpr std::size_t longestTitle = 80;
    return SvgElement("svg")
        .set("xmlns", "http://www.w3.org/2000/svg")
        .set("width", width)
        .set("height", height)
        .set("viewBox", "0 0 " + px(width) + " " + px(height))
        .set("font-family", "Helvetica, Arial, 'DejaVu Sans', sans-serif")
        .set("font-size", 13)
        .set("fill", palette::ink)
        .add(definitions())
        .add(rectangle({0.0, 0.0, width, height}).set("fill", palette::paper))
        .add(words({marginLeft, 28.0}, shortened(content_.title, longestTitle))
                 .set("font-size", 17)
                 .set("font-weight", "bold"))
        .add(body);
  }

  SvgElement definitions() const {
    const std::string& ids = content_.idPrefix;
    SvgElement definitions("defs");
    definitions.add(SvgElement("clipPath").set("id", ids + "plan").add(rectangle(view_.box())))
        .add(exclusionHatch(ids))
        .add(arrowHead(ids + "arrow", palette::counterLine, 11));
    for (const SvgElement& head : tracks_.arrowHeads()) {
      definitions.add(head);
    }
    return definitions;
  }

  // Everything inside the frame, clipped by it. The placer keeps names off what must stay legible.
  SvgElement plan() {
    SvgElement plan("g");
    plan.set("clip-path", "url(#" + content_.idPrefix + "plan)")
        .add(planScan(content_.dots, view_))
        .add(planAreas(content_, rings_))
        .add(countedDots(content_.dots, view_));
    std::vector<PixelBox> ids;
    plan.add(tracks_.draw(view_, ids));
    for (const PixelBox& id : ids) {
      placer_.block(id);
    }
    addOrigin(plan);
    addLines(plan);
    addCrossings(plan);
    return plan;
  }

  void addOrigin(SvgElement& plan) {
    const Pixel p = view_.toPixel({0.0, 0.0});
    if (view_.box().contains(p)) {
      plan.add(originMark(p));
      placer_.block(PixelBox::around(p, 16.0, 16.0));
    }
  }

  void addLines(SvgElement& plan) {
    for (const PlanContent::Line& line : content_.lines) {
      const Pixel from = view_.toPixel(line.first);
      const Pixel to = view_.toPixel(line.second);
      plan.add(counterLineMark(from, to, content_.idPrefix));
      placer_.block(PixelBox::around(leftSideOf(from, to), 19.0, 19.0));
      placer_.block(PixelBox::around(from, 12.0, 12.0));
      placer_.block(PixelBox::around(to, 16.0, 16.0));
      placer_.avoidLine(from, to);
    }
  }

  void addCrossings(SvgElement& plan) {
    constexpr std::size_t mostMarks = 60;
    const bool isCrowd = content_.crossings.size() > mostMarks;
    for (const PlanContent::Crossing& crossing : content_.crossings) {
      const Pixel p = view_.toPixel(crossing.at);
      plan.add(crossingMark(p, crossing.title, isCrowd));
      if (!isCrowd) {
        placer_.block(PixelBox::around(p, 13.0, 13.0));
      }
    }
  }

  const PlanContent& content_;
  Viewport view_;
  LabelPlacer placer_;
  std::vector<PixelRing> rings_;
  PlanTracks tracks_;
};

}  // namespace

std::string drawPlan(const PlanContent& content) {
  PlanContent named = content;
  named.idPrefix = content.idPrefix.empty() ? idPrefixOf(content) : content.idPrefix;
  return Drawing(named).draw();
}

}  // namespace orvantis::toolkit
