#include "drawing/SvgTimeline.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <string>
#include <string_view>

#include "drawing/Palette.h"
#include "drawing/Ticks.h"
#include "text/Number.h"
#include "text/Text.h"

namespace orvantis::toolkit {
namespace {

constexpr double rowHeight = 24.0;
constexpr double nameDistance = 24.0;
constexpr std::size_t longestName = 28;

class Drawing {
 public:
  Drawing(const TimelineContent& content, double left, double top, double width)
      : content_(content), left_(left), top_(top), width_(width), y_(top) {}

  SvgPiece draw() {
    const auto rows = static_cast<double>(content_.zones.size() + content_.lines.size());
    drawGrid(rows * rowHeight);
    for (const TimelineContent::ZoneRow& zone : content_.zones) {
      drawZone(zone);
    }
    for (const TimelineContent::LineRow& line : content_.lines) {
      drawLine(line);
    }
    body_.add(rectangle({left_, top_, width_, y_ - top_}).set("fill", "none").set("stroke", palette::frame));
    drawKey(y_ + 66.0);
    return {body_, y_ + 78.0 - top_};
  }

 private:
  double toPixel(double time) const {
    const double duration = content_.end - content_.begin;
    return left_ + (duration > 0.0 ? (time - content_.begin) / duration * width_ : 0.0);
  }

  void drawGrid(double height) {
    std::string lines;
    SvgElement texts("g");
    texts.set("font-size", 12).set("fill", palette::paleInk);
    // Seconds since 1970 are too long for the ticks, so their common part is in the caption.
    const double base = std::abs(content_.begin) < 1e5 ? 0.0 : std::floor(content_.begin);
    if (const double duration = content_.end - content_.begin; duration > 0.0) {
      const double step = niceStep(duration * 70.0 / width_);
      for (double i = std::ceil((content_.begin - base) / step); i * step <= content_.end - base; ++i) {
        const double x = toPixel(base + i * step);
        lines += "M" + at({x, top_}) + "v" + px(height);
        texts.add(words({x, top_ + height + 18.0}, toText(i * step, decimalsOf(step)))
                      .set("text-anchor", "middle"));
      }
    }
    const std::string caption = base == 0.0 ? "time in seconds" : "seconds after " + toText(base, 0);
    texts.add(words({left_ + width_ / 2.0, top_ + height + 38.0}, caption).set("text-anchor", "middle"));
    body_.add(rectangle({left_, top_, width_, height}).set("fill", palette::plane))
        .add(path(lines).set("stroke", palette::grid).set("fill", "none"))
        .add(texts);
  }

  void beginRow(const std::string& name, std::string_view colour) {
    if (y_ > top_) {
      body_.add(path("M" + at({left_, y_}) + "h" + px(width_)).set("stroke", palette::grid));
    }
    body_.add(words({left_ + width_ + nameDistance, y_ + rowHeight / 2.0 + 4.5}, shortened(name, longestName))
                  .set("font-weight", "bold")
                  .set("fill", colour));
  }

  void drawBars(const std::vector<TimelineContent::Interval>& intervals, double offset, double height,
                std::string_view colour, double opacity) {
    std::string data;
    for (const auto& [begin, end] : intervals) {
      constexpr double shortest = 1.0;  // pixels, so that a single frame is visible, also at the end
      const double from = std::min(toPixel(begin), left_ + width_ - shortest);
      const double length = std::max(toPixel(end) - from, shortest);
      data += "M" + at({from, y_ + offset}) + "h" + px(length) + "v" + px(height) + "h" + px(-length) + "z";
    }
    if (!data.empty()) {
      body_.add(path(data).set("fill", colour).set("fill-opacity", opacity, 2));
    }
  }

  void drawZone(const TimelineContent::ZoneRow& zone) {
    const std::string_view colour = palette::field(zone.field);
    beginRow(zone.name, colour);
    drawBars(zone.occupied, 4.0, 10.0, colour, 0.7);
    drawBars(zone.inhabited, 16.0, 4.0, palette::ink, 0.85);
    y_ += rowHeight;
  }

  // It points up for a crossing to the left side, down for one to the right side.
  static SvgElement triangle(const Pixel& centre, bool up) {
    const double tip = up ? -5.0 : 5.0;
    const Pixel corner{centre.x - 5.0, centre.y - tip * 0.8};
    return path("M" + at({centre.x, centre.y + tip}) + "L" + at(corner) + "h10z")
        .set("fill", palette::counterLine)
        .set("stroke", palette::paper)
        .set("stroke-width", 0.8);
  }

  // Each mark has its id, unless the next mark would cover it.
  void drawMarks(const std::vector<TimelineContent::Mark>& marks, double y) {
    for (std::size_t i = 0; i < marks.size(); ++i) {
      const Pixel centre{toPixel(marks[i].time), y};
      body_.add(triangle(centre, marks[i].toLeft));
      const std::string id = std::to_string(marks[i].track);
      const double textEnd = centre.x + 7.0 + 6.5 * static_cast<double>(id.size());
      const double free = i + 1 < marks.size() ? toPixel(marks[i + 1].time) - 5.0 : left_ + width_;
      if (textEnd <= free) {
        body_.add(words({centre.x + 7.0, centre.y + 4.0}, id).set("font-size", 11));
      }
    }
  }

  // Bars for crossings in steps of time: to the left above the middle of the row, to the right below it.
  void drawHistogram(const std::vector<TimelineContent::Mark>& marks) {
    constexpr std::size_t steps = 120;
    std::array<std::array<std::size_t, steps>, 2> counts{};
    std::size_t most = 1;
    for (const TimelineContent::Mark& mark : marks) {
      const double share = std::clamp((toPixel(mark.time) - left_) / width_, 0.0, 1.0);
      const auto step = std::min(static_cast<std::size_t>(share * steps), steps - 1);
      most = std::max(most, ++counts[mark.toLeft ? 0 : 1][step]);
    }
    const double middle = y_ + rowHeight / 2.0;
    const double width = width_ / steps;
    std::string data;
    for (std::size_t i = 0; i < steps; ++i) {
      for (const std::size_t direction : {0U, 1U}) {
        if (const std::size_t count = counts[direction][i]; count > 0) {
          const double height = 10.0 * static_cast<double>(count) / static_cast<double>(most);
          data += "M" + at({left_ + width * static_cast<double>(i), middle}) + "h" + px(width) + "v" +
                  px(direction == 0 ? -height : height) + "h" + px(-width) + "z";
        }
      }
    }
    const std::string title =
        counted(marks.size(), "crossing") + ", at most " + std::to_string(most) + " in a bar";
    body_.add(path(data).set("fill", palette::counterLine).addTitle(title));
  }

  void drawLine(const TimelineContent::LineRow& line) {
    beginRow(line.name, palette::counterLine);
    constexpr std::size_t mostMarks = 60;
    if (line.crossings.size() > mostMarks) {
      drawHistogram(line.crossings);
      y_ += rowHeight;
      return;
    }
    // Each direction has one half of the row.
    for (const bool toLeft : {true, false}) {
      std::vector<TimelineContent::Mark> marks;
      std::copy_if(line.crossings.begin(), line.crossings.end(), std::back_inserter(marks),
                   [toLeft](const TimelineContent::Mark& mark) { return mark.toLeft == toLeft; });
      std::stable_sort(
          marks.begin(), marks.end(),
          [](const TimelineContent::Mark& a, const TimelineContent::Mark& b) { return a.time < b.time; });
      drawMarks(marks, y_ + rowHeight * (toLeft ? 0.27 : 0.73));
    }
    y_ += rowHeight;
  }

  void drawKey(double y) {
    double x = left_;
    const auto text = [&](std::string_view what, double width) {
      body_.add(words({x, y + 4.5}, what));
      x += width;
    };
    const auto bar = [&](double height, std::string_view colour) {
      body_.add(rectangle({x, y - height / 2.0, 24.0, height}).set("fill", colour));
      x += 32.0;
    };
    if (content_.hasPoints) {
      bar(10.0, palette::anyField);
      text("occupied", 84.0);
    }
    if (content_.hasObjects) {
      bar(4.0, palette::ink);
      text("objects inside", 118.0);
      for (const bool up : {true, false}) {
        body_.add(triangle({x + 5.0, y}, up));
        x += 17.0;
        text(up ? "to left" : "to right, with the track's id", 60.0);
      }
    }
  }

  const TimelineContent& content_;
  double left_;
  double top_;
  double width_;
  double y_;  // the top of the next row
  SvgElement body_{"g"};
};

}  // namespace

SvgPiece drawTimeline(const TimelineContent& content, double left, double top, double width) {
  return Drawing(content, left, top, width).draw();
}

}  // namespace orvantis::toolkit
