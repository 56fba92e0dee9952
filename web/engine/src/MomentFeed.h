#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Recording.h"
#include "recording/FrameWarnings.h"
#include "recording/Points.h"
#include "recording/TimeLine.h"

namespace orvantis::engine {

/// One moment on its way through a session.
struct FedMoment {
  filter::monitor::Stamp stamp{0};
  bool hasPoints = false;
  std::size_t pointCount = 0;
  std::string file;
  std::optional<toolkit::Points> points;                 ///< valid until the next moment
  const filter::classify::ZoneCounts* counts = nullptr;  ///< in place of points
  const std::vector<filter::monitor::TrackedObject>* objects = nullptr;
};

/// Gives the moments of a recording in order, by the cheapest way that is there: with counts that were kept,
/// with points that were kept, or by reading the files.
class MomentFeed {
 public:
  /// @param counts by the zones that the session asks for; null: points are needed
  /// @param pointsAt a moment whose points are needed in any case
  /// @throws Failure when the files cannot be read
  MomentFeed(std::shared_ptr<Recording> recording, std::shared_ptr<const FrameCounts> counts,
             std::optional<std::size_t> pointsAt = std::nullopt);

  /// Nothing at the end; the recording knows its contents then. @throws Failure
  std::optional<FedMoment> next();

  /// Known at the end. In words, as the command warns.
  std::vector<std::string> warnings() const;
  std::uint64_t bytes() const { return timeLine_ ? timeLine_->input().bytes() : recording_->size(); }

 private:
  FedMoment read(toolkit::Moment moment);
  void keep(const FedMoment& moment);
  void finish();
  std::optional<FedMoment> nextKept();

  std::shared_ptr<Recording> recording_;
  std::shared_ptr<const Contents> contents_;  // of a recording that was read before
  std::shared_ptr<const FrameCounts> counts_;
  std::optional<std::size_t> pointsAt_;
  std::optional<toolkit::TimeLine> timeLine_;  // while the files are read
  std::size_t position_ = 0;
  std::optional<toolkit::Moment> current_;
  Contents found_;
  std::size_t keptBytes_ = 0;
  toolkit::FrameWarnings warnings_;
};

}  // namespace orvantis::engine
