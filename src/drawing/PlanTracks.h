#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "drawing/Viewport.h"

namespace orvantis::toolkit {

/// Tracks of objects on a plan: up to a dozen strong and with their ids, more of them thin and see-through.
class PlanTracks {
 public:
  explicit PlanTracks(const std::vector<PlanContent::Track>& tracks);

  /// The colour of a class, by the order in which classes first come; one colour for all of a single class.
  std::string_view colourOf(const std::string& className) const;
  /// In the order in which they first come.
  const std::vector<std::string>& classes() const { return classes_; }
  bool hasIds() const;

  /// All tracks; the boxes of their ids are put to `taken`.
  std::string draw(const Viewport& view, std::vector<PixelBox>& taken) const;
  /// One for the legend. @param marker the id of its arrow head
  std::string sample(const Pixel& from, const Pixel& to, std::string_view colour) const;

  /// How many different arrow heads there are: one for each class colour.
  std::string markers(const std::string& prefix) const;
  void setPrefix(const std::string& prefix) { prefix_ = prefix; }

 private:
  std::string pathOf(const std::vector<Pixel>& path, std::string_view colour, const std::string& title) const;
  std::string markerId(std::string_view colour) const;

  const std::vector<PlanContent::Track>& tracks_;
  std::vector<std::string> classes_;
  std::string prefix_;
};

}  // namespace orvantis::toolkit
