#pragma once

#include <string>
#include <string_view>

#include "drawing/LabelPlacer.h"

namespace orvantis::toolkit {

/// An element of a picture. It escapes all values and texts, and nothing else escapes them. So a name in a
/// document cannot become markup.
class SvgElement {
 public:
  explicit SvgElement(std::string_view name);

  SvgElement& set(std::string_view attribute, std::string_view value);
  /// A length or coordinate in pixels, or a share, with at most that many decimals and without trailing
  /// zeros.
  SvgElement& set(std::string_view attribute, double value, int decimals = 1);

  /// Adds the child on a line of its own.
  SvgElement& add(const SvgElement& child);
  SvgElement& addText(std::string_view text);
  /// Adds the text that is shown while the pointer is on the element. An empty text adds nothing.
  SvgElement& addTitle(std::string_view title);

  std::string str() const;

 private:
  std::string name_;
  std::string attributes_;
  std::string content_;
};

// The elements that all parts of a picture use.

SvgElement rectangle(const PixelBox& box);
/// @param data moves and lines, as SVG has them
SvgElement path(std::string_view data);
SvgElement circle(const Pixel& centre, double radius);
/// A text that begins at the place.
SvgElement words(const Pixel& at, std::string_view text);

/// A length or coordinate in pixels, to a tenth, for the data of a path.
std::string px(double value);
std::string at(const Pixel& p);

}  // namespace orvantis::toolkit
