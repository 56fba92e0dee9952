#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <filter/classify/PointClassifier.h>
#include <filter/monitor/Stamp.h>
#include <filter/monitor/TrackedObject.h>

#include "KeptPoints.h"
#include "MomentWalk.h"
#include "RecordingFiles.h"
#include "ZoneSignature.h"
#include "session/HeightWatch.h"

namespace orvantis::engine {

/// What is kept of a moment once it was read.
struct KeptMoment {
  filter::monitor::Stamp stamp{0};
  bool hasPoints = false;
  std::size_t pointCount = 0;  ///< no returns included
  std::string file;            ///< of its points
  KeptPoints points;           ///< empty where they were not kept
  std::optional<std::vector<filter::monitor::TrackedObject>> objects;
};

/// What a recording was found to hold when it was read to its end.
struct Contents {
  std::vector<KeptMoment> moments;
  bool keepsPoints = true;  ///< of every moment
  std::vector<std::string> warnings;
};

/// The counts of all frames by one set of zones.
struct FrameCounts {
  ZoneSignatures zones;
  std::vector<filter::classify::ZoneCounts> counts;  ///< by moment; zero where it has no points
  toolkit::HeightWatch heights;
};

/// Files that are looked at as one recording, again and again.
class Recording {
 public:
  Recording(RecordingFiles files, RecordingOptions options);
  Recording(const Recording&) = delete;
  Recording& operator=(const Recording&) = delete;

  const RecordingFiles& files() const { return files_; }
  const RecordingOptions& options() const { return options_; }
  std::uint64_t size() const { return size_; }
  /// For the points of single moments, and what is not kept of them.
  MomentWalk& walk() { return walk_; }
  bool hasClouds() const { return !files_.clouds.empty(); }
  bool hasTracks() const { return files_.tracks.has_value(); }
  /// How many bytes of points may be kept: none of a recording that is much larger than memory.
  std::size_t pointBudget() const;

  /// Nothing before it was read to its end.
  const std::shared_ptr<const Contents>& contents() const { return contents_; }
  void setContents(Contents contents) { contents_ = std::make_shared<const Contents>(std::move(contents)); }

  /// The counts by zones that hold the same points; null when there are none.
  std::shared_ptr<const FrameCounts> countsOf(const ZoneSignatures& zones);
  /// Keeps them, and forgets those that were not asked for longest.
  void keep(FrameCounts counts);

 private:
  RecordingFiles files_;
  RecordingOptions options_;
  MomentWalk walk_{files_, options_};
  std::uint64_t size_ = 0;
  std::shared_ptr<const Contents> contents_;
  std::list<std::shared_ptr<const FrameCounts>> counts_;  // the last asked for first
};

}  // namespace orvantis::engine
