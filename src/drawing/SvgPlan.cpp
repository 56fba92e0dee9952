#include "drawing/SvgPlan.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

#include "drawing/LabelPlacer.h"
#include "drawing/PlanMarks.h"
#include "drawing/PlanScan.h"
#include "drawing/PlanTracks.h"
#include "drawing/Svg.h"
#include "drawing/Viewport.h"
#include "text/Number.h"
#include "text/Text.h"
#include "text/Xml.h"

namespace orvantis::toolkit {
namespace {

using filter::detection::Point;

constexpr std::string_view exclusionColour = "#5b6672";

struct Label {
  std::string text;
  Pixel anchor;
  const PixelRing* own;
  std::string colour;
  bool italic;
};

constexpr double marginBottom = 52.0;
constexpr double legendWidth = 250.0;
constexpr double smallestTimeline = 520.0;

class Drawing {
 public:
  explicit Drawing(const PlanContent& content)
      : content_(content),
        view_(viewportFor(content)),
        placer_(inset(view_.box(), 4.0)),
        tracks_(content.tracks) {
    tracks_.setPrefix(content.idPrefix);
    for (const PlanContent::Area& area : content.areas) {
      rings_.push_back(view_.toPixels(area.ring));
    }
  }

  std::string draw() {
    const PixelBox box = view_.box();
    legendTop_ = marginTop + 8.0;
    drawGrid();
    body_ += "<g clip-path=\"url(#" + ids() + "plan)\">\n";
    body_ += drawScan(content_.dots, view_);
    drawAreas();
    body_ += drawCounted(content_.dots, view_);
    std::vector<PixelBox> ids;
    body_ += tracks_.draw(view_, ids);
    for (const PixelBox& id : ids) {
      placer_.block(id);
    }
    drawOrigin();
    drawLines();
    drawCrossings();
    body_ += "</g>\n";
    drawLabels();
    drawFrame();
    drawLegend();
    double width = marginLeft + box.width + 24.0 + legendWidth;
    double height = std::max(marginTop + box.height + marginBottom, legendTop_ + 16.0);
    if (content_.timeline) {
      const double rowWidth = std::max(box.width, smallestTimeline);
      const SvgPiece timeline = drawTimeline(*content_.timeline, marginLeft, height + 8.0, rowWidth);
      body_ += timeline.body;
      width = std::max(width, marginLeft + rowWidth + 24.0 + legendWidth);
      height += 8.0 + timeline.height;
    }
    return head(width, height) + body_ + "</svg>\n";
  }

 private:
  static PixelBox inset(const PixelBox& box, double by) {
    return {box.left + by, box.top + by, box.width - 2.0 * by, box.height - 2.0 * by};
  }

  std::string_view colourOf(const PlanContent::Area& area) const {
    return area.field ? fieldColour(*area.field) : exclusionColour;
  }

  std::string head(double width, double height) const {
    const PixelBox box = view_.box();
    const std::string size = px(width) + "\" height=\"" + px(height);
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + size + "\" viewBox=\"0 0 " + px(width) +
           " " + px(height) +
           "\" font-family=\"Helvetica, Arial, 'DejaVu Sans', sans-serif\" font-size=\"13\" fill=\"" +
           std::string(ink) +
           "\">\n"
           "<defs>\n"
           "<clipPath id=\"" +
           ids() + "plan\"><rect x=\"" + px(box.left) + "\" y=\"" + px(box.top) + "\" width=\"" +
           px(box.width) + "\" height=\"" + px(box.height) +
           "\"/></clipPath>\n"
           "<pattern id=\"" +
           ids() +
           "hatch\" width=\"7\" height=\"7\" patternUnits=\"userSpaceOnUse\" "
           "patternTransform=\"rotate(45)\"><path d=\"M0 0v7\" stroke=\"" +
           std::string(exclusionColour) +
           "\" stroke-width=\"2\" stroke-opacity=\"0.55\"/></pattern>\n"
           "<marker id=\"" +
           ids() +
           "arrow\" viewBox=\"0 0 10 10\" refX=\"8\" refY=\"5\" markerWidth=\"11\" "
           "markerHeight=\"11\" markerUnits=\"userSpaceOnUse\" orient=\"auto\"><path d=\"M0 0L10 5L0 10z\" "
           "fill=\"" +
           std::string(lineColour) + "\"/></marker>\n" + tracks_.markers(ids()) +
           "</defs>\n"
           "<rect width=\"" +
           px(width) + "\" height=\"" + px(height) +
           "\" fill=\"#ffffff\"/>\n"
           "<text x=\"" +
           px(box.left) + "\" y=\"28\" font-size=\"17\" font-weight=\"bold\">" +
           xmlEscaped(shortened(content_.title, 80)) + "</text>\n";
  }

  void drawGrid() {
    const PixelBox box = view_.box();
    constexpr double betweenTicks = 70.0;  // pixels
    const double step = niceStep(betweenTicks / view_.scale());
    const int decimals = decimalsOf(step);
    body_ += "<rect x=\"" + px(box.left) + "\" y=\"" + px(box.top) + "\" width=\"" + px(box.width) +
             "\" height=\"" + px(box.height) + "\" fill=\"#fbfcfd\"/>\n";
    std::string grid;
    std::string texts;
    for (double i = std::ceil(view_.left() / step); i * step <= view_.right(); ++i) {
      const double x = view_.toPixel({i * step, 0.0}).x;
      grid += "M" + px(x) + " " + px(box.top) + "v" + px(box.height);
      texts += "<text x=\"" + px(x) + "\" y=\"" + px(box.top + box.height + 18.0) +
               "\" text-anchor=\"middle\">" + toText(i * step, decimals) + "</text>\n";
    }
    for (double i = std::ceil(view_.bottom() / step); i * step <= view_.top(); ++i) {
      const double y = view_.toPixel({0.0, i * step}).y;
      grid += "M" + px(box.left) + " " + px(y) + "h" + px(box.width);
      texts += "<text x=\"" + px(box.left - 8.0) + "\" y=\"" + px(y + 4.5) + "\" text-anchor=\"end\">" +
               toText(i * step, decimals) + "</text>\n";
    }
    body_ += "<path d=\"" + grid +
             "\" stroke=\"#e4e8ec\" fill=\"none\"/>\n<g font-size=\"12\" fill=\"#52606d\">\n" + texts +
             "<text x=\"" + px(box.left + box.width / 2.0) + "\" y=\"" + px(box.top + box.height + 40.0) +
             "\" text-anchor=\"middle\">x in metres</text>\n<text transform=\"translate(16 " +
             px(box.top + box.height / 2.0) +
             ") rotate(-90)\" text-anchor=\"middle\">y in metres</text>\n</g>\n";
  }

  void drawFrame() {
    const PixelBox box = view_.box();
    body_ += "<rect x=\"" + px(box.left) + "\" y=\"" + px(box.top) + "\" width=\"" + px(box.width) +
             "\" height=\"" + px(box.height) + "\" fill=\"none\" stroke=\"#9aa5b1\"/>\n";
  }

  static std::string pathOf(const PixelRing& ring) {
    std::string path;
    for (const Pixel& p : ring) {
      path += (path.empty() ? "M" : "L") + at(p);
    }
    return path + "z";
  }

  void drawAreas() {
    for (const bool exclusion : {false, true}) {
      for (std::size_t i = 0; i < rings_.size(); ++i) {
        const PlanContent::Area& area = content_.areas[i];
        if (rings_[i].empty() || exclusion == area.field.has_value()) {
          continue;
        }
        body_ += "<path d=\"" + pathOf(rings_[i]) + "\" fill=\"";
        body_ += exclusion ? "url(#" + ids() + "hatch)\""
                           : std::string(colourOf(area)) + "\" fill-opacity=\"0.16\"";
        body_ +=
            " stroke=\"" + std::string(colourOf(area)) + "\" stroke-width=\"1.8\" stroke-linejoin=\"round\"";
        body_ += exclusion ? " stroke-dasharray=\"5 3\">" : ">";
        body_ += "<title>" + xmlEscaped(area.name) + "</title></path>\n";
      }
    }
  }

  void drawCrossings() {
    constexpr std::size_t mostMarks = 60;
    const bool isCrowd = content_.crossings.size() > mostMarks;
    for (const PlanContent::Crossing& one : content_.crossings) {
      const Pixel p = view_.toPixel(one.at);
      body_ += crossingMark(p, one.title, isCrowd) + "\n";
      if (!isCrowd) {
        placer_.block(PixelBox::around(p, 13.0, 13.0));
      }
    }
  }

  void drawOrigin() {
    const Pixel p = view_.toPixel({0.0, 0.0});
    if (view_.box().contains(p)) {
      body_ += originMark(p);
      placer_.block(PixelBox::around(p, 16.0, 16.0));
    }
  }

  // The segment with an arrow head at its second end, and an L on its left side.
  std::string counterLine(const Pixel& from, const Pixel& to) {
    const double length = std::hypot(to.x - from.x, to.y - from.y);
    std::string text = "<path d=\"M" + at(from) + "L" + at(to) + "\" stroke=\"" + std::string(lineColour) +
                       "\" stroke-width=\"2.6\" fill=\"none\" marker-end=\"url(#" + ids() +
                       "arrow)\"/><circle cx=\"" + px(from.x) + "\" cy=\"" + px(from.y) +
                       "\" r=\"3.4\" fill=\"" + std::string(lineColour) + "\"/>";
    if (length > 0.0) {
      // To the left as seen along the line; pixels run down, so the plane's left turn is a right turn here.
      const Pixel left{(to.y - from.y) / length, -(to.x - from.x) / length};
      const Pixel middle{(from.x + to.x) / 2.0, (from.y + to.y) / 2.0};
      const Pixel mark{middle.x + 15.0 * left.x, middle.y + 15.0 * left.y};
      text += "<path d=\"M" + at(middle) + "L" + at(mark) + "\" stroke=\"" + std::string(lineColour) +
              "\" stroke-width=\"1.4\"/><circle cx=\"" + px(mark.x) + "\" cy=\"" + px(mark.y) +
              "\" r=\"7.5\" fill=\"#ffffff\" stroke=\"" + std::string(lineColour) +
              "\" stroke-width=\"1.3\"/><text x=\"" + px(mark.x) + "\" y=\"" + px(mark.y + 3.6) +
              "\" font-size=\"10\" font-weight=\"bold\" fill=\"" + std::string(lineColour) +
              "\" text-anchor=\"middle\">L</text>";
      placer_.block(PixelBox::around(mark, 19.0, 19.0));
    }
    return text + "\n";
  }

  void drawLines() {
    for (const PlanContent::Line& line : content_.lines) {
      const Pixel from = view_.toPixel(line.first);
      const Pixel to = view_.toPixel(line.second);
      body_ += counterLine(from, to);
      placer_.block(PixelBox::around(from, 12.0, 12.0));
      placer_.block(PixelBox::around(to, 16.0, 16.0));
      placer_.avoidLine(from, to);
    }
  }

  std::vector<Label> labels() const {
    std::vector<Label> labels;
    for (std::size_t i = 0; i < rings_.size(); ++i) {
      if (rings_[i].empty()) {
        continue;
      }
      std::vector<const PixelRing*> others;
      for (const PixelRing& ring : rings_) {
        if (&ring != &rings_[i] && !ring.empty()) {
          others.push_back(&ring);
        }
      }
      const PlanContent::Area& area = content_.areas[i];
      labels.push_back({area.name, visualCentre(rings_[i], others), &rings_[i], std::string(colourOf(area)),
                        !area.field.has_value()});
    }
    for (const PlanContent::Line& line : content_.lines) {
      const Pixel from = view_.toPixel(line.first);
      const Pixel to = view_.toPixel(line.second);
      labels.push_back({line.name,
                        {from.x + 0.75 * (to.x - from.x), from.y + 0.75 * (to.y - from.y)},
                        nullptr,
                        std::string(lineColour),
                        false});
    }
    return labels;
  }

  void drawLabels() {
    for (const PixelRing& ring : rings_) {
      if (!ring.empty()) {
        placer_.avoidRing(ring);
      }
    }
    constexpr std::size_t longestLabel = 32;
    constexpr double characterWidth = 7.6;  // of a wide sans-serif at 13 pixels
    for (const Label& label : labels()) {
      const std::string text = shortened(label.text, longestLabel);
      const double width = characterWidth * static_cast<double>(displayWidth(text)) + 6.0;
      const auto box = text.empty() ? std::nullopt : placer_.place(label.anchor, width, 17.0, label.own);
      if (!box) {
        continue;
      }
      const Pixel centre = box->centre();
      const bool isOutside = label.own != nullptr && !isInside(*label.own, centre);
      if (isOutside) {
        const Pixel end{std::clamp(label.anchor.x, box->left, box->left + box->width),
                        std::clamp(label.anchor.y, box->top, box->top + box->height)};
        body_ += "<path d=\"M" + at(label.anchor) + "L" + at(end) + "\" stroke=\"" + label.colour +
                 "\" stroke-width=\"1\"/><circle cx=\"" + px(label.anchor.x) + "\" cy=\"" +
                 px(label.anchor.y) + "\" r=\"2.2\" fill=\"" + label.colour + "\"/>\n";
      }
      body_ += "<text x=\"" + px(centre.x) + "\" y=\"" + px(centre.y + 4.5) +
               "\" text-anchor=\"middle\" fill=\"" + label.colour +
               "\" stroke=\"#ffffff\" stroke-width=\"3.5\" stroke-linejoin=\"round\" "
               "stroke-opacity=\"0.85\" paint-order=\"stroke\" font-weight=\"" +
               (label.italic ? "normal\" font-style=\"italic" : "bold") + "\">" + xmlEscaped(text) +
               "</text>\n";
    }
  }

  void addToLegend(const std::string& symbol, const std::string& text, bool bold = false) {
    const double left = legendLeft();
    body_ += symbol + "<text x=\"" + px(left + 42.0) + "\" y=\"" + px(legendTop_ + 4.5) + "\"" +
             (bold ? " font-weight=\"bold\"" : "") + ">" + xmlEscaped(shortened(text, 26)) + "</text>\n";
    legendTop_ += 24.0;
  }

  const std::string& ids() const { return content_.idPrefix; }

  void addTracksToLegend() {
    constexpr std::size_t mostClasses = 6;
    const auto numberOf = [this](const std::string& className) {
      return static_cast<std::uint64_t>(
          std::count_if(content_.tracks.begin(), content_.tracks.end(),
                        [&className](const PlanContent::Track& one) { return one.className == className; }));
    };
    for (std::size_t i = 0; i < std::min(mostClasses, tracks_.classes().size()); ++i) {
      const std::string& className = tracks_.classes()[i];
      const std::string name = className.empty() ? "track" : shortened(className, 12);
      addToLegend(
          tracks_.sample({legendLeft(), legendTop_}, {legendLeft() + 30.0, legendTop_},
                         tracks_.colourOf(className)),
          tracks_.hasIds() ? name + ", id at its end" : name + ": " + counted(numberOf(className), "track"));
    }
  }

  double legendLeft() const { return marginLeft + view_.box().width + 24.0; }

  std::string swatch(const std::string& fill, std::string_view stroke, bool dashed) const {
    return "<rect x=\"" + px(legendLeft()) + "\" y=\"" + px(legendTop_ - 8.0) +
           "\" width=\"30\" height=\"16\" rx=\"2\" fill=\"" + fill + " stroke=\"" + std::string(stroke) +
           "\" stroke-width=\"1.8\"" + (dashed ? " stroke-dasharray=\"5 3\"" : "") + "/>";
  }

  std::string dotSymbol(std::string_view colour) const {
    std::string path;
    for (const auto& [x, y] : {std::pair(4.0, -3.0), {11.0, 2.0}, {17.0, -4.0}, {22.0, 3.0}, {27.0, -1.0}}) {
      path += "M" + at({legendLeft() + x, legendTop_ + y}) + "h0";
    }
    return "<path d=\"" + path + "\" stroke=\"" + std::string(colour) +
           "\" stroke-width=\"2.4\" stroke-linecap=\"round\"/>";
  }

  void drawLegend() {
    for (const PlanContent::Field& field : content_.fields) {
      const std::string_view colour = fieldColour(field.index);
      addToLegend(swatch(std::string(colour) + "\" fill-opacity=\"0.16\"", colour, false),
                  "Field " + std::to_string(field.index) + ": " + field.name);
    }
    const bool hasExclusion = std::any_of(content_.areas.begin(), content_.areas.end(),
                                          [](const PlanContent::Area& area) { return !area.field; });
    if (hasExclusion) {
      addToLegend(swatch("url(#" + ids() + "hatch)\"", exclusionColour, true), "Exclusion zone");
    }
    if (!content_.lines.empty()) {
      legendTop_ += 14.0;  // room for the mark of the left side
      addToLegend(counterLine({legendLeft(), legendTop_}, {legendLeft() + 32.0, legendTop_}),
                  "Counter line, L: left side");
    }
    if (!content_.dots.empty()) {
      addToLegend(dotSymbol(ScanColours::ground), "Scan, " + counted(content_.dots.size(), "point"));
      addToLegend(dotSymbol(ScanColours::low), "0.25 to 0.7 m over ground");
      addToLegend(dotSymbol(ScanColours::high), "higher");
      addToLegend(dotSymbol(ScanColours::counted), "counted in a zone");
    }
    if (!content_.tracks.empty()) {
      addTracksToLegend();
    }
    if (!content_.crossings.empty()) {
      addToLegend(crossingMark({legendLeft() + 15.0, legendTop_}, "", false), "Crossing counted");
    }
    if (view_.box().contains(view_.toPixel({0.0, 0.0}))) {
      addToLegend(originMark({legendLeft() + 15.0, legendTop_}), "Origin (0, 0)");
    }
  }

  const PlanContent& content_;
  Viewport view_;
  LabelPlacer placer_;
  std::vector<PixelRing> rings_;
  PlanTracks tracks_;
  std::string body_;
  double legendTop_ = 0.0;
};

}  // namespace

std::string drawPlan(const PlanContent& content) {
  PlanContent named = content;
  named.idPrefix = content.idPrefix.empty() ? idPrefixOf(content) : content.idPrefix;
  return Drawing(named).draw();
}

}  // namespace orvantis::toolkit
