#include "drawing/PlanScan.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "drawing/Palette.h"
#include "text/Number.h"

namespace orvantis::toolkit {
namespace {

using Dot = PlanContent::Dot;
using Cell = std::pair<int, int>;  // row, column

constexpr std::size_t mostCells = 14000;  // keeps the file of the picture small

// The dots in a cell of the raster. The highest dot decides the shade, and many dots make the stroke wider.
struct Filling {
  double height = 0.0;
  std::size_t count = 0;
};

struct Raster {
  double cell = 1.5;  // pixels
  std::map<Cell, Filling> cells;
};

// Makes the cells larger until they are few enough, so that a scan of 100,000 points is a small file.
Raster rasterOf(const std::vector<Dot>& dots, const Viewport& view, bool counted) {
  const PixelBox box = view.box();
  Raster raster;
  for (;; raster.cell *= 1.25) {
    raster.cells.clear();
    for (const Dot& dot : dots) {
      const Pixel p = view.toPixel(dot.at);
      if (dot.counted == counted && box.contains(p)) {
        const Cell cell(static_cast<int>((p.y - box.top) / raster.cell),
                        static_cast<int>((p.x - box.left) / raster.cell));
        Filling& filling = raster.cells[cell];
        filling.height = filling.count == 0 ? dot.height : std::max(filling.height, dot.height);
        ++filling.count;
      }
    }
    if (raster.cells.size() <= mostCells) {
      return raster;
    }
  }
}

// Draws the chosen cells as short strokes of one path, each relative to the one before. No cell, no path.
template <typename Choice>
void addStrokes(SvgElement& group, const Raster& raster, const PixelBox& box, std::string_view colour,
                double width, Choice isChosen) {
  std::string data;
  Cell last(0, 0);
  for (const auto& [cell, filling] : raster.cells) {
    if (isChosen(filling)) {
      data += "m" + std::to_string(cell.second - last.second) + " " +
              std::to_string(cell.first - last.first) + "h0";
      last = cell;
    }
  }
  if (!data.empty()) {
    group.add(path("M0 0" + data)
                  .set("transform",
                       "translate(" + at({box.left, box.top}) + ") scale(" + toText(raster.cell, 4) + ")")
                  .set("fill", "none")
                  .set("stroke", colour)
                  .set("stroke-linecap", "round")
                  .set("stroke-width", width / raster.cell, 3));
  }
}

}  // namespace

double groundOf(const std::vector<Dot>& dots) {
  constexpr double step = 0.1;
  std::map<long, std::size_t> heights;
  for (const Dot& dot : dots) {
    if (std::abs(dot.height) < 1e6) {
      ++heights[std::lround(dot.height / step)];
    }
  }
  const auto fullest = std::max_element(heights.begin(), heights.end(),
                                        [](const auto& a, const auto& b) { return a.second < b.second; });
  return fullest == heights.end() ? 0.0 : step * static_cast<double>(fullest->first);
}

SvgElement planScan(const std::vector<Dot>& dots, const Viewport& view) {
  const Raster raster = rasterOf(dots, view, false);
  const double ground = groundOf(dots);
  // In metres above the ground. Dots below the first are the ground, also when it is rough; people reach
  // above the second.
  constexpr double roughness = 0.25;
  constexpr double knee = 0.7;
  const auto band = [ground](const Filling& filling) {
    const double height = filling.height - ground;
    return height <= roughness ? std::size_t{0} : height <= knee ? std::size_t{1} : std::size_t{2};
  };
  constexpr std::array<std::string_view, 3> colours = {palette::ground, palette::low, palette::high};
  constexpr std::array<double, 3> widths = {1.2, 1.6, 2.0};
  // A cell with many dots has a wider stroke, so that a wall looks like a line.
  constexpr std::size_t dense = 4;
  SvgElement group("g");
  for (std::size_t i = 0; i < colours.size(); ++i) {
    for (const bool isDense : {false, true}) {
      addStrokes(
          group, raster, view.box(), colours[i], widths[i] + (isDense ? 0.7 : 0.0),
          [&](const Filling& filling) { return band(filling) == i && (filling.count >= dense) == isDense; });
    }
  }
  return group;
}

SvgElement countedDots(const std::vector<Dot>& dots, const Viewport& view) {
  SvgElement group("g");
  addStrokes(group, rasterOf(dots, view, true), view.box(), palette::counted, 2.4,
             [](const Filling&) { return true; });
  return group;
}

}  // namespace orvantis::toolkit
