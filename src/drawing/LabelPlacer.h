#pragma once

#include <optional>
#include <vector>

namespace orvantis::toolkit {

/// A place in a picture, in pixels; y runs down.
struct Pixel {
  double x = 0.0;
  double y = 0.0;
};

struct PixelBox {
  double left = 0.0;
  double top = 0.0;
  double width = 0.0;
  double height = 0.0;

  Pixel centre() const { return {left + width / 2.0, top + height / 2.0}; }
  static PixelBox around(const Pixel& centre, double width, double height) {
    return {centre.x - width / 2.0, centre.y - height / 2.0, width, height};
  }
  bool contains(const Pixel& p) const {
    return left <= p.x && p.x <= left + width && top <= p.y && p.y <= top + height;
  }
  bool overlaps(const PixelBox& other) const {
    return left < other.left + other.width && other.left < left + width && top < other.top + other.height &&
           other.top < top + height;
  }
};

using PixelRing = std::vector<Pixel>;

/// Whether the point is inside the ring, read as closed. Points on the border may get either answer.
bool isInside(const PixelRing& ring, const Pixel& p);

/// The place inside the ring that is farthest from its border and, if possible, outside of those of the other
/// rings that are smaller.
Pixel visualCentre(const PixelRing& ring, const std::vector<const PixelRing*>& others);

/// Finds places for labels so that none covers another.
class LabelPlacer {
 public:
  /// @param area where labels may be
  explicit LabelPlacer(const PixelBox& area) : area_(area) {}

  /// No label may cover the box.
  void block(const PixelBox& box) { blocked_.push_back(box); }
  /// Labels avoid the line if they can.
  void avoidLine(const Pixel& from, const Pixel& to) { lines_.push_back({from, to}); }
  /// Labels of other things avoid the region if they can.
  void avoidRing(const PixelRing& ring);

  /// The best free place for a label near `anchor`; nothing when there is no free place.
  /// @param own the region that the label names, as it was given to `avoidRing`; null when it names no region
  std::optional<PixelBox> place(const Pixel& anchor, double width, double height, const PixelRing* own);

 private:
  struct Line {
    Pixel from;
    Pixel to;
  };

  double cost(const PixelBox& box, const Pixel& anchor, const PixelRing* own) const;

  PixelBox area_;
  std::vector<PixelBox> blocked_;
  std::vector<Line> lines_;
  std::vector<const PixelRing*> rings_;
};

}  // namespace orvantis::toolkit
