#include "drawing/SvgElement.h"

#include "text/Number.h"
#include "text/Xml.h"

namespace orvantis::toolkit {

SvgElement::SvgElement(std::string_view name) : name_(name) {}

SvgElement& SvgElement::set(std::string_view attribute, std::string_view value) {
  attributes_.append(" ").append(attribute).append("=\"").append(xmlEscaped(value)).append("\"");
  return *this;
}

SvgElement& SvgElement::set(std::string_view attribute, double value, int decimals) {
  return set(attribute, toText(value, decimals));
}

SvgElement& SvgElement::add(const SvgElement& child) {
  content_.append("\n").append(child.str());
  return *this;
}

SvgElement& SvgElement::addText(std::string_view text) {
  content_ += xmlEscaped(text);
  return *this;
}

SvgElement& SvgElement::addTitle(std::string_view title) {
  return title.empty() ? *this : add(SvgElement("title").addText(title));
}

std::string SvgElement::str() const {
  const std::string head = "<" + name_ + attributes_;
  return content_.empty() ? head + "/>" : head + ">" + content_ + "</" + name_ + ">";
}

SvgElement rectangle(const PixelBox& box) {
  return SvgElement("rect")
      .set("x", box.left)
      .set("y", box.top)
      .set("width", box.width)
      .set("height", box.height);
}

SvgElement path(std::string_view data) {
  return SvgElement("path").set("d", data);
}

SvgElement circle(const Pixel& centre, double radius) {
  return SvgElement("circle").set("cx", centre.x).set("cy", centre.y).set("r", radius);
}

SvgElement words(const Pixel& at, std::string_view text) {
  return SvgElement("text").set("x", at.x).set("y", at.y).addText(text);
}

std::string px(double value) {
  return toText(value, 1);
}

std::string at(const Pixel& p) {
  return px(p.x) + " " + px(p.y);
}

}  // namespace orvantis::toolkit
