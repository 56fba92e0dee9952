#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "drawing/SvgElement.h"
#include "drawing/Viewport.h"

namespace orvantis::toolkit {

/// Tracks of objects on a plan. Up to a dozen tracks are drawn strong and with their ids; more tracks are
/// drawn thin and transparent, without ids.
class PlanTracks {
 public:
  /// @param tracks must outlive this object
  /// @param ids the prefix of the ids in the picture
  PlanTracks(const std::vector<PlanContent::Track>& tracks, std::string ids);

  /// In the order in which they are first seen.
  const std::vector<std::string>& classes() const { return classes_; }
  bool hasIds() const;

  /// All tracks. Appends the boxes of their ids to `taken`.
  SvgElement draw(const Viewport& view, std::vector<PixelBox>& taken) const;
  /// A track for the legend.
  SvgElement sample(const Pixel& from, const Pixel& to, const std::string& className) const;

  /// The arrow heads, one for each colour. The picture defines them once.
  std::vector<SvgElement> arrowHeads() const;

 private:
  std::string_view colourOf(const std::string& className) const;
  SvgElement trackOf(const std::vector<Pixel>& sightings, std::string_view colour,
                     const std::string& title) const;
  std::string arrowHeadId(std::string_view colour) const;

  const std::vector<PlanContent::Track>& tracks_;
  std::string ids_;
  std::vector<std::string> classes_;
  std::map<std::string_view, std::size_t> places_;  // of each class in the vector
};

}  // namespace orvantis::toolkit
