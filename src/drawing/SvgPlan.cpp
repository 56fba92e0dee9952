#include "drawing/SvgPlan.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "drawing/LabelPlacer.h"
#include "drawing/Svg.h"
#include "text/Number.h"
#include "text/Text.h"
#include "text/Xml.h"

namespace orvantis::toolkit {
namespace {

using filter::detection::Point;

constexpr std::string_view exclusionColour = "#5b6672";
constexpr std::string_view trackColour = "#243b53";

constexpr double marginLeft = 62.0;
constexpr double marginTop = 48.0;
constexpr double marginBottom = 52.0;
constexpr double legendWidth = 250.0;
constexpr double largestWidth = 900.0;
constexpr double largestHeight = 760.0;
constexpr double smallestSide = 160.0;
constexpr double smallestTimeline = 520.0;

// The rectangle of the plane that the plan shows, and where it is in the picture.
class Viewport {
 public:
  Viewport(double left, double right, double bottom, double top) : left_(left), top_(top) {
    const double width = right - left;
    const double height = top - bottom;
    if (!(width < 1e9) || !(height < 1e9)) {
      throw std::runtime_error("the zones are too far apart to draw");
    }
    scale_ = std::min(largestWidth / width, largestHeight / height);
    size_ = {width * scale_, height * scale_};
    // A long and thin plan keeps a side that can be read: it shows more of the plane there.
    if (size_.x < smallestSide) {
      left_ -= (smallestSide - size_.x) / 2.0 / scale_;
      size_.x = smallestSide;
    }
    if (size_.y < smallestSide) {
      top_ += (smallestSide - size_.y) / 2.0 / scale_;
      size_.y = smallestSide;
    }
  }

  Pixel toPixel(const Point& p) const {
    return {marginLeft + (p.x() - left_) * scale_, marginTop + (top_ - p.y()) * scale_};
  }
  PixelRing toPixels(const std::vector<Point>& ring) const {
    PixelRing pixels;
    for (const Point& p : ring) {
      pixels.push_back(toPixel(p));
    }
    return pixels;
  }
  PixelBox box() const { return {marginLeft, marginTop, size_.x, size_.y}; }

  double left() const { return left_; }
  double right() const { return left_ + size_.x / scale_; }
  double top() const { return top_; }
  double bottom() const { return top_ - size_.y / scale_; }
  double scale() const { return scale_; }

 private:
  double left_;
  double top_;
  double scale_ = 1.0;
  Pixel size_;
};

Viewport viewportFor(const PlanContent& content) {
  std::vector<Point> points;
  for (const PlanContent::Area& area : content.areas) {
    points.insert(points.end(), area.ring.begin(), area.ring.end());
  }
  for (const PlanContent::Line& line : content.lines) {
    points.push_back(line.first);
    points.push_back(line.second);
  }
  if (points.empty()) {
    for (const PlanContent::Dot& dot : content.dots) {
      points.push_back(dot.at);
    }
  }
  if (points.empty()) {
    points.emplace_back(0.0, 0.0);
  }
  const auto [left, right] = std::ranges::minmax_element(points, {}, &Point::x);
  const auto [bottom, top] = std::ranges::minmax_element(points, {}, &Point::y);
  const double size = std::max({right->x() - left->x(), top->y() - bottom->y(), 1.0});
  const double padding = 0.06 * size;
  // The origin, where the sensor often is, belongs into the picture when it is near.
  const auto reach = [size](double low, double high) {
    return low - size < 0.0 && high + size > 0.0 ? std::pair(std::min(low, 0.0), std::max(high, 0.0))
                                                 : std::pair(low, high);
  };
  const auto [x0, x1] = reach(left->x(), right->x());
  const auto [y0, y1] = reach(bottom->y(), top->y());
  return {x0 - padding, x1 + padding, y0 - padding, y1 + padding};
}

struct Label {
  std::string text;
  Pixel anchor;
  const PixelRing* own;
  std::string colour;
  bool italic;
};

class Drawing {
 public:
  explicit Drawing(const PlanContent& content)
      : content_(content), view_(viewportFor(content)), placer_(inset(view_.box(), 4.0)) {
    for (const PlanContent::Area& area : content.areas) {
      rings_.push_back(view_.toPixels(area.ring));
    }
  }

  std::string draw() {
    const PixelBox box = view_.box();
    legendTop_ = marginTop + 8.0;
    drawGrid();
    body_ += "<g clip-path=\"url(#plan)\">\n";
    drawDots(false);
    drawAreas();
    drawDots(true);
    drawTracks();
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
           "<clipPath id=\"plan\"><rect x=\"" +
           px(box.left) + "\" y=\"" + px(box.top) + "\" width=\"" + px(box.width) + "\" height=\"" +
           px(box.height) +
           "\"/></clipPath>\n"
           "<pattern id=\"hatch\" width=\"7\" height=\"7\" patternUnits=\"userSpaceOnUse\" "
           "patternTransform=\"rotate(45)\"><path d=\"M0 0v7\" stroke=\"" +
           std::string(exclusionColour) +
           "\" stroke-width=\"2\" stroke-opacity=\"0.55\"/></pattern>\n"
           "<marker id=\"arrow\" viewBox=\"0 0 10 10\" refX=\"8\" refY=\"5\" markerWidth=\"11\" "
           "markerHeight=\"11\" markerUnits=\"userSpaceOnUse\" orient=\"auto\"><path d=\"M0 0L10 5L0 10z\" "
           "fill=\"" +
           std::string(lineColour) + "\"/></marker>\n" + (content_.tracks.empty() ? "" : trackMarker()) +
           "</defs>\n"
           "<rect width=\"" +
           px(width) + "\" height=\"" + px(height) +
           "\" fill=\"#ffffff\"/>\n"
           "<text x=\"" +
           px(box.left) + "\" y=\"28\" font-size=\"17\" font-weight=\"bold\">" +
           xmlEscaped(shortened(content_.title, 80)) + "</text>\n";
  }

  static std::string trackMarker() {
    return "<marker id=\"track\" viewBox=\"0 0 10 10\" refX=\"8\" refY=\"5\" markerWidth=\"9\" "
           "markerHeight=\"9\" markerUnits=\"userSpaceOnUse\" orient=\"auto\"><path d=\"M0 0L10 5L0 10z\" "
           "fill=\"" +
           std::string(trackColour) + "\"/></marker>\n";
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

  // One dot for each cell of a raster, as short strokes of one path: a scan of 100,000 points stays a small
  // file. The raster grows until the dots are few enough.
  void drawDots(bool counted) {
    constexpr std::size_t mostDots = 12000;
    const PixelBox box = view_.box();
    std::set<std::pair<int, int>> cells;
    double cell = 1.5;
    do {
      cells.clear();
      for (const PlanContent::Dot& dot : content_.dots) {
        const Pixel p = view_.toPixel(dot.at);
        if (dot.counted == counted && box.contains(p)) {
          cells.emplace(static_cast<int>((p.y - box.top) / cell), static_cast<int>((p.x - box.left) / cell));
        }
      }
      cell *= 1.25;
    } while (cells.size() > mostDots);
    cell /= 1.25;
    if (cells.empty()) {
      return;
    }
    std::string path;
    int row = 0;
    int column = 0;
    for (const auto& [y, x] : cells) {
      path += "m" + std::to_string(x - column) + " " + std::to_string(y - row) + "h0";
      row = y;
      column = x;
    }
    body_ += "<path transform=\"translate(" + at({box.left, box.top}) + ") scale(" + toText(cell, 4) +
             ")\" d=\"M0 0" + path + "\" fill=\"none\" stroke=\"" + (counted ? "#102a43" : "#a3b1bf") +
             "\" stroke-linecap=\"round\" stroke-width=\"" + toText((counted ? 2.3 : 1.5) / cell, 3) +
             "\"/>\n";
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
        body_ += exclusion ? "url(#hatch)\"" : std::string(colourOf(area)) + "\" fill-opacity=\"0.16\"";
        body_ +=
            " stroke=\"" + std::string(colourOf(area)) + "\" stroke-width=\"1.8\" stroke-linejoin=\"round\"";
        body_ += exclusion ? " stroke-dasharray=\"5 3\"/>\n" : "/>\n";
      }
    }
  }

  // From a dot to an arrow head. Sightings closer to each other than a pixel add nothing to see; of an object
  // that stands still the dot is enough.
  static std::string track(const std::vector<Pixel>& path) {
    const auto isNear = [](const Pixel& a, const Pixel& b, double distance) {
      return std::hypot(a.x - b.x, a.y - b.y) < distance;
    };
    const bool stands = std::ranges::all_of(path, [&](const Pixel& p) { return isNear(p, path[0], 3.0); });
    std::string text;
    if (!stands) {
      std::string line = "M" + at(path.front());
      Pixel last = path.front();
      for (const Pixel& p : path) {
        if (!isNear(p, last, 1.0)) {
          line += "L" + at(p);
          last = p;
        }
      }
      text = "<path d=\"" + line + "\" fill=\"none\" stroke=\"" + std::string(trackColour) +
             "\" stroke-width=\"1.5\" stroke-opacity=\"0.75\" stroke-linejoin=\"round\" "
             "marker-end=\"url(#track)\"/>";
    }
    return text + "<circle cx=\"" + px(path.front().x) + "\" cy=\"" + px(path.front().y) +
           "\" r=\"2.4\" fill=\"" + std::string(trackColour) + "\"/>";
  }

  // Beyond the end of its track where there is room, else beside it; left out in a crowd.
  void drawTrackId(std::int32_t id, const std::vector<Pixel>& path) {
    const Pixel& end = path.back();
    const double length = std::hypot(end.x - path.front().x, end.y - path.front().y);
    const Pixel ahead = length > 3.0
                            ? Pixel{(end.x - path.front().x) / length, (end.y - path.front().y) / length}
                            : Pixel{1.0, 0.0};
    const std::string text = std::to_string(id);
    const double width = 7.0 * static_cast<double>(text.size()) + 2.0;
    for (const double distance : {9.0, 21.0, 33.0, 45.0}) {
      for (const double aside : {0.0, 12.0, -12.0, 24.0, -24.0}) {
        const double along = distance + std::abs(ahead.x) * (width / 2.0 - 4.0);
        const PixelBox box = PixelBox::around(
            {end.x + along * ahead.x - aside * ahead.y, end.y + along * ahead.y + aside * ahead.x}, width,
            12.0);
        if (std::ranges::none_of(trackIds_, [&box](const PixelBox& other) { return box.overlaps(other); })) {
          const Pixel centre = box.centre();
          body_ += "<text x=\"" + px(centre.x) + "\" y=\"" + px(centre.y + 4.0) +
                   "\" font-size=\"11\" text-anchor=\"middle\" fill=\"" + std::string(trackColour) +
                   "\" stroke=\"#ffffff\" stroke-width=\"2.5\" stroke-opacity=\"0.85\" "
                   "paint-order=\"stroke\">" +
                   text + "</text>\n";
          trackIds_.push_back(box);
          placer_.block(box);
          return;
        }
      }
    }
  }

  void drawTracks() {
    for (const PlanContent::Track& one : content_.tracks) {
      const std::vector<Pixel> path = view_.toPixels(one.path);
      body_ += track(path) + "\n";
      placer_.avoidLine(path.front(), path.back());
    }
    for (const PlanContent::Track& one : content_.tracks) {
      drawTrackId(one.id, view_.toPixels(one.path));
    }
  }

  static std::string crossing(const Pixel& p) {
    return "<path d=\"M" + at({p.x, p.y - 6.0}) + "l6 6l-6 6l-6 -6z\" fill=\"#ffd43b\" stroke=\"" +
           std::string(lineColour) + "\" stroke-width=\"1.6\"/>";
  }

  void drawCrossings() {
    for (const Point& place : content_.crossings) {
      const Pixel p = view_.toPixel(place);
      body_ += crossing(p) + "\n";
      placer_.block(PixelBox::around(p, 13.0, 13.0));
    }
  }

  void drawOrigin() {
    const Pixel p = view_.toPixel({0.0, 0.0});
    if (view_.box().contains(p)) {
      body_ += origin(p);
      placer_.block(PixelBox::around(p, 16.0, 16.0));
    }
  }

  static std::string origin(const Pixel& p) {
    return "<path d=\"M" + at({p.x - 7.0, p.y}) + "h14M" + at({p.x, p.y - 7.0}) + "v14\" stroke=\"" +
           std::string(ink) + "\" stroke-width=\"1.6\"/><circle cx=\"" + px(p.x) + "\" cy=\"" + px(p.y) +
           "\" r=\"3.6\" fill=\"#ffffff\" stroke=\"" + std::string(ink) + "\" stroke-width=\"1.6\"/>\n";
  }

  // The segment with an arrow head at its second end, and an L on its left side.
  std::string counterLine(const Pixel& from, const Pixel& to) {
    const double length = std::hypot(to.x - from.x, to.y - from.y);
    std::string text = "<path d=\"M" + at(from) + "L" + at(to) + "\" stroke=\"" + std::string(lineColour) +
                       "\" stroke-width=\"2.6\" fill=\"none\" marker-end=\"url(#arrow)\"/><circle cx=\"" +
                       px(from.x) + "\" cy=\"" + px(from.y) + "\" r=\"3.4\" fill=\"" +
                       std::string(lineColour) + "\"/>";
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
    const bool hasExclusion =
        std::ranges::any_of(content_.areas, [](const PlanContent::Area& area) { return !area.field; });
    if (hasExclusion) {
      addToLegend(swatch("url(#hatch)\"", exclusionColour, true), "Exclusion zone");
    }
    if (!content_.lines.empty()) {
      legendTop_ += 14.0;  // room for the mark of the left side
      addToLegend(counterLine({legendLeft(), legendTop_}, {legendLeft() + 32.0, legendTop_}),
                  "Counter line, L: left side");
    }
    if (!content_.dots.empty()) {
      addToLegend(dotSymbol("#a3b1bf"), "Scan, " + counted(content_.dots.size(), "point"));
      addToLegend(dotSymbol("#102a43"), "Point counted in a zone");
    }
    if (!content_.tracks.empty()) {
      addToLegend(track({{legendLeft(), legendTop_}, {legendLeft() + 30.0, legendTop_}}),
                  "Track, id at its end");
    }
    if (!content_.crossings.empty()) {
      addToLegend(crossing({legendLeft() + 15.0, legendTop_}), "Crossing counted");
    }
    if (view_.box().contains(view_.toPixel({0.0, 0.0}))) {
      addToLegend(origin({legendLeft() + 15.0, legendTop_}), "Origin (0, 0)");
    }
  }

  const PlanContent& content_;
  Viewport view_;
  LabelPlacer placer_;
  std::vector<PixelRing> rings_;
  std::vector<PixelBox> trackIds_;
  std::string body_;
  double legendTop_ = 0.0;
};

}  // namespace

std::string drawPlan(const PlanContent& content) {
  return Drawing(content).draw();
}

}  // namespace orvantis::toolkit
