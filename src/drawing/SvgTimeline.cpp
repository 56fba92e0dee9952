#include "drawing/SvgTimeline.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <string_view>

#include "drawing/Svg.h"
#include "text/Number.h"
#include "text/Text.h"
#include "text/Xml.h"

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
    body_ += "<rect x=\"" + px(left_) + "\" y=\"" + px(top_) + "\" width=\"" + px(width_) + "\" height=\"" +
             px(y_ - top_) + "\" fill=\"none\" stroke=\"#9aa5b1\"/>\n";
    drawKey(y_ + 66.0);
    return {body_, y_ + 78.0 - top_};
  }

 private:
  double toPixel(double time) const {
    const double duration = content_.end - content_.begin;
    return left_ + (duration > 0.0 ? (time - content_.begin) / duration * width_ : 0.0);
  }

  void drawGrid(double height) {
    body_ += "<rect x=\"" + px(left_) + "\" y=\"" + px(top_) + "\" width=\"" + px(width_) + "\" height=\"" +
             px(height) + "\" fill=\"#fbfcfd\"/>\n";
    std::string grid;
    std::string texts;
    // Seconds since 1970 are too long to stand at every tick.
    const double base = std::abs(content_.begin) < 1e5 ? 0.0 : std::floor(content_.begin);
    if (const double duration = content_.end - content_.begin; duration > 0.0) {
      const double step = niceStep(duration * 70.0 / width_);
      for (double i = std::ceil((content_.begin - base) / step); i * step <= content_.end - base; ++i) {
        const std::string x = px(toPixel(base + i * step));
        grid += "M" + x + " " + px(top_) + "v" + px(height);
        texts += "<text x=\"" + x + "\" y=\"" + px(top_ + height + 18.0) + "\" text-anchor=\"middle\">" +
                 toText(i * step, decimalsOf(step)) + "</text>\n";
      }
    }
    const std::string caption = base == 0.0 ? "time in seconds" : "seconds after " + toText(base, 0);
    body_ += "<path d=\"" + grid + "\" stroke=\"#e4e8ec\" fill=\"none\"/>\n<g font-size=\"12\" fill=\"" +
             std::string(paleInk) + "\">\n" + texts + "<text x=\"" + px(left_ + width_ / 2.0) + "\" y=\"" +
             px(top_ + height + 38.0) + "\" text-anchor=\"middle\">" + caption + "</text>\n</g>\n";
  }

  void beginRow(const std::string& name, std::string_view colour) {
    if (y_ > top_) {
      body_ += "<path d=\"M" + at({left_, y_}) + "h" + px(width_) + "\" stroke=\"#e4e8ec\"/>\n";
    }
    body_ += "<text x=\"" + px(left_ + width_ + nameDistance) + "\" y=\"" + px(y_ + rowHeight / 2.0 + 4.5) +
             "\" font-weight=\"bold\" fill=\"" + std::string(colour) + "\">" +
             xmlEscaped(shortened(name, longestName)) + "</text>\n";
  }

  void drawBars(const std::vector<TimelineContent::Interval>& intervals, double offset, double height,
                std::string_view colour, std::string_view opacity) {
    std::string path;
    for (const auto& [begin, end] : intervals) {
      constexpr double shortest = 1.0;  // a single frame is seen too, and stays inside at the end
      const double from = std::min(toPixel(begin), left_ + width_ - shortest);
      const double length = std::max(toPixel(end) - from, shortest);
      path += "M" + at({from, y_ + offset}) + "h" + px(length) + "v" + px(height) + "h" + px(-length) + "z";
    }
    if (!path.empty()) {
      body_ += "<path d=\"" + path + "\" fill=\"" + std::string(colour) + "\" fill-opacity=\"" +
               std::string(opacity) + "\"/>\n";
    }
  }

  void drawZone(const TimelineContent::ZoneRow& zone) {
    const std::string_view colour = fieldColour(zone.field);
    beginRow(zone.name, colour);
    drawBars(zone.occupied, 4.0, 10.0, colour, "0.7");
    drawBars(zone.inhabited, 16.0, 4.0, ink, "0.85");
    y_ += rowHeight;
  }

  // Points up to the left side, down to the right side.
  static std::string triangle(const Pixel& centre, bool up) {
    const double tip = up ? -5.0 : 5.0;
    return "<path d=\"M" + at({centre.x, centre.y + tip}) + "L" + at({centre.x - 5.0, centre.y - tip * 0.8}) +
           "h10z\" fill=\"" + std::string(lineColour) + "\" stroke=\"#ffffff\" stroke-width=\"0.8\"/>";
  }

  // Each with its id, unless the next one is in the way.
  void drawMarks(const std::vector<TimelineContent::Mark>& marks, double y) {
    for (std::size_t i = 0; i < marks.size(); ++i) {
      const Pixel centre{toPixel(marks[i].time), y};
      body_ += triangle(centre, marks[i].toLeft);
      const std::string id = std::to_string(marks[i].track);
      const double textEnd = centre.x + 7.0 + 6.5 * static_cast<double>(id.size());
      const double free = i + 1 < marks.size() ? toPixel(marks[i + 1].time) - 5.0 : left_ + width_;
      if (textEnd <= free) {
        body_ += "<text x=\"" + px(centre.x + 7.0) + "\" y=\"" + px(centre.y + 4.0) + "\" font-size=\"11\">" +
                 id + "</text>";
      }
      body_ += "\n";
    }
  }

  // Crossings to the left above the middle of the row, to the right below it, in steps of time.
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
    std::string path;
    for (std::size_t i = 0; i < steps; ++i) {
      for (const std::size_t direction : {0U, 1U}) {
        if (const std::size_t count = counts[direction][i]; count > 0) {
          const double height = 10.0 * static_cast<double>(count) / static_cast<double>(most);
          path += "M" + at({left_ + width * static_cast<double>(i), middle}) + "h" + px(width) + "v" +
                  px(direction == 0 ? -height : height) + "h" + px(-width) + "z";
        }
      }
    }
    body_ += "<path d=\"" + path + "\" fill=\"" + std::string(lineColour) + "\"><title>" +
             counted(marks.size(), "crossing") + ", at most " + std::to_string(most) +
             " in a bar</title></path>\n";
  }

  void drawLine(const TimelineContent::LineRow& line) {
    beginRow(line.name, lineColour);
    constexpr std::size_t mostMarks = 60;
    if (line.crossings.size() > mostMarks) {
      drawHistogram(line.crossings);
      y_ += rowHeight;
      return;
    }
    // Each direction has its half of the row.
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
    const auto text = [&](const std::string& what, double width) {
      body_ += "<text x=\"" + px(x) + "\" y=\"" + px(y + 4.5) + "\">" + what + "</text>\n";
      x += width;
    };
    const auto bar = [&](double height, std::string_view colour) {
      body_ += "<rect x=\"" + px(x) + "\" y=\"" + px(y - height / 2.0) + "\" width=\"24\" height=\"" +
               px(height) + "\" fill=\"" + std::string(colour) + "\"/>";
      x += 32.0;
    };
    if (content_.hasPoints) {
      bar(10.0, "#7b8794");
      text("occupied", 84.0);
    }
    if (content_.hasObjects) {
      bar(4.0, ink);
      text("objects inside", 118.0);
      for (const bool up : {true, false}) {
        body_ += triangle({x + 5.0, y}, up);
        x += 17.0;
        text(up ? "to left" : "to right, with the track's id", 60.0);
      }
    }
  }

  const TimelineContent& content_;
  double left_;
  double top_;
  double width_;
  double y_;  // of the next row
  std::string body_;
};

}  // namespace

SvgPiece drawTimeline(const TimelineContent& content, double left, double top, double width) {
  return Drawing(content, left, top, width).draw();
}

}  // namespace orvantis::toolkit
