#include "drawing/LabelPlacer.h"

#include <algorithm>
#include <limits>

#include "trigonometry/Length.h"

namespace orvantis::toolkit {
namespace {

double distance(const Pixel& a, const Pixel& b) {
  return trigonometry::length(a.x - b.x, a.y - b.y);
}

double distanceToSegment(const Pixel& p, const Pixel& from, const Pixel& to) {
  const double dx = to.x - from.x;
  const double dy = to.y - from.y;
  const double square = dx * dx + dy * dy;
  const double t =
      square > 0.0 ? std::clamp(((p.x - from.x) * dx + (p.y - from.y) * dy) / square, 0.0, 1.0) : 0.0;
  return distance(p, {from.x + t * dx, from.y + t * dy});
}

// Clips the segment against the four sides of the box.
bool crosses(const PixelBox& box, const Pixel& from, const Pixel& to) {
  double enter = 0.0;
  double leave = 1.0;
  const auto clip = [&](double start, double delta, double low, double high) {
    if (delta == 0.0) {
      return low <= start && start <= high;
    }
    const double a = (low - start) / delta;
    const double b = (high - start) / delta;
    enter = std::max(enter, std::min(a, b));
    leave = std::min(leave, std::max(a, b));
    return enter <= leave;
  };
  return clip(from.x, to.x - from.x, box.left, box.left + box.width) &&
         clip(from.y, to.y - from.y, box.top, box.top + box.height);
}

double distanceToBorder(const PixelRing& ring, const Pixel& p) {
  double nearest = std::numeric_limits<double>::infinity();
  for (std::size_t i = 0; i < ring.size(); ++i) {
    nearest = std::min(nearest, distanceToSegment(p, ring[i], ring[(i + 1) % ring.size()]));
  }
  return nearest;
}

PixelBox boundsOf(const PixelRing& ring) {
  const auto [left, right] =
      std::minmax_element(ring.begin(), ring.end(), [](const Pixel& a, const Pixel& b) { return a.x < b.x; });
  const auto [top, bottom] =
      std::minmax_element(ring.begin(), ring.end(), [](const Pixel& a, const Pixel& b) { return a.y < b.y; });
  return {left->x, top->y, right->x - left->x, bottom->y - top->y};
}

// The places of a raster around a label's anchor, in order of their distance.
const std::vector<Pixel>& offsetsByDistance() {
  static const std::vector<Pixel> offsets = [] {
    constexpr double step = 4.0;
    constexpr int reach = 60;  // steps in each direction
    std::vector<Pixel> raster;
    for (int i = -reach; i <= reach; ++i) {
      for (int j = -reach; j <= reach; ++j) {
        raster.push_back({step * i, step * j});
      }
    }
    std::stable_sort(raster.begin(), raster.end(), [](const Pixel& a, const Pixel& b) {
      return a.x * a.x + a.y * a.y < b.x * b.x + b.y * b.y;
    });
    return raster;
  }();
  return offsets;
}

double areaOf(const PixelBox& box) {
  return box.width * box.height;
}

}  // namespace

bool isInside(const PixelRing& ring, const Pixel& p) {
  int winding = 0;
  for (std::size_t i = 0; i < ring.size(); ++i) {
    const Pixel& a = ring[i];
    const Pixel& b = ring[(i + 1) % ring.size()];
    const double side = (b.x - a.x) * (p.y - a.y) - (b.y - a.y) * (p.x - a.x);
    if (a.y <= p.y && b.y > p.y && side > 0.0) {
      ++winding;
    } else if (a.y > p.y && b.y <= p.y && side < 0.0) {
      --winding;
    }
  }
  return winding != 0;
}

Pixel visualCentre(const PixelRing& ring, const std::vector<const PixelRing*>& others) {
  constexpr int steps = 40;
  constexpr double shared = 1000.0;  // more than any distance in a picture
  const PixelBox bounds = boundsOf(ring);
  Pixel best = bounds.centre();
  double bestScore = -std::numeric_limits<double>::infinity();
  for (int i = 1; i < steps; ++i) {
    for (int j = 1; j < steps; ++j) {
      const Pixel p{bounds.left + bounds.width * i / steps, bounds.top + bounds.height * j / steps};
      if (!isInside(ring, p)) {
        continue;
      }
      double score = distanceToBorder(ring, p);
      for (const PixelRing* other : others) {
        if (areaOf(boundsOf(*other)) >= areaOf(bounds)) {
          continue;  // the larger ring finds another place; this one would have to go to its own edge
        }
        score -= isInside(*other, p) ? shared : 0.0;
        score = std::min(score, distanceToBorder(*other, p));
      }
      // All places along a middle line are equally far from the border: this prefers the middle.
      score -= 0.05 * distance(p, bounds.centre());
      if (score > bestScore) {
        best = p;
        bestScore = score;
      }
    }
  }
  return best;
}

void LabelPlacer::avoidRing(const PixelRing& ring) {
  rings_.push_back(&ring);
  for (std::size_t i = 0; i < ring.size(); ++i) {
    avoidLine(ring[i], ring[(i + 1) % ring.size()]);
  }
}

std::optional<PixelBox> LabelPlacer::place(const Pixel& anchor, double width, double height,
                                           const PixelRing* own) {
  std::optional<PixelBox> best;
  double bestCost = std::numeric_limits<double>::infinity();
  for (const Pixel& offset : offsetsByDistance()) {
    if (trigonometry::length(offset.x, offset.y) >= bestCost) {
      break;  // the distance alone costs more, and it grows from here on
    }
    const PixelBox box = PixelBox::around({anchor.x + offset.x, anchor.y + offset.y}, width, height);
    const double boxCost = cost(box, anchor, own);
    if (boxCost < bestCost) {
      best = box;
      bestCost = boxCost;
    }
  }
  if (best) {
    block(*best);
  }
  return best;
}

double LabelPlacer::cost(const PixelBox& box, const Pixel& anchor, const PixelRing* own) const {
  const bool isFree = area_.left <= box.left && box.left + box.width <= area_.left + area_.width &&
                      area_.top <= box.top && box.top + box.height <= area_.top + area_.height &&
                      std::none_of(blocked_.begin(), blocked_.end(),
                                   [&](const PixelBox& other) { return box.overlaps(other); });
  if (!isFree) {
    return std::numeric_limits<double>::infinity();
  }
  constexpr double perLine = 40.0;     // how many pixels a label moves to avoid a line
  constexpr double perRegion = 45.0;   // to avoid a region that it does not name
  constexpr double outsideOwn = 20.0;  // to stay in its own region
  double sum = distance(box.centre(), anchor);
  for (const Line& line : lines_) {
    sum += crosses(box, line.from, line.to) ? perLine : 0.0;
  }
  for (const PixelRing* ring : rings_) {
    const bool inside = isInside(*ring, box.centre());
    sum += inside && ring != own ? perRegion : 0.0;
    sum += !inside && ring == own ? outsideOwn : 0.0;
  }
  return sum;
}

}  // namespace orvantis::toolkit
