#include "MomentFeed.h"

#include <utility>

#include "files/Failure.h"

namespace orvantis::engine {

using filter::monitor::TrackedObject;
using toolkit::sizeOf;

MomentFeed::MomentFeed(std::shared_ptr<Recording> recording, std::shared_ptr<const FrameCounts> counts,
                       std::optional<std::size_t> pointsAt)
    : recording_(std::move(recording)),
      contents_(recording_->contents()),
      counts_(std::move(counts)),
      pointsAt_(pointsAt) {
  const bool needsFiles = !contents_ || (!contents_->keepsPoints && (!counts_ || pointsAt_));
  if (needsFiles) {
    timeLine_.emplace(openFiles(recording_->files(), recording_->options()).timeLine);
  }
}

void MomentFeed::keep(const FedMoment& moment) {
  KeptMoment& kept = found_.moments.emplace_back();
  kept.stamp = moment.stamp;
  kept.hasPoints = moment.hasPoints;
  kept.pointCount = moment.pointCount;
  kept.file = moment.file;
  if (moment.objects != nullptr) {
    kept.objects = *moment.objects;
  }
  if (!moment.points || !found_.keepsPoints) {
    return;
  }
  const bool isFloat = std::holds_alternative<filter::classify::PointsView<float>>(*moment.points);
  const std::size_t bytes = 3 * moment.pointCount * (isFloat ? sizeof(float) : sizeof(double));
  keptBytes_ += bytes;
  if (keptBytes_ <= recording_->pointBudget()) {
    kept.points = KeptPoints(*moment.points);
    return;
  }
  found_.keepsPoints = false;
  for (KeptMoment& earlier : found_.moments) {
    earlier.points = KeptPoints();
  }
}

FedMoment MomentFeed::read(toolkit::Moment moment) {
  current_ = std::move(moment);
  FedMoment fed;
  fed.stamp = current_->stamp;
  fed.objects = current_->objectsOrNull();
  if (current_->frame) {
    const toolkit::InputFrame& frame = *current_->frame;
    fed.hasPoints = true;
    fed.points = frame.points;
    fed.pointCount = sizeOf(frame.points);
    fed.file = frame.file;
    warnings_.add(frame);
  }
  if (!contents_) {
    keep(fed);
  }
  return fed;
}

void MomentFeed::finish() {
  if (contents_) {
    return;
  }
  found_.warnings = warnings_.texts(*timeLine_);
  recording_->setContents(std::move(found_));
  contents_ = recording_->contents();
}

std::optional<FedMoment> MomentFeed::nextKept() {
  if (position_ == contents_->moments.size()) {
    return std::nullopt;
  }
  const KeptMoment& kept = contents_->moments[position_];
  FedMoment fed;
  fed.stamp = kept.stamp;
  fed.hasPoints = kept.hasPoints;
  fed.pointCount = kept.pointCount;
  fed.file = kept.file;
  fed.objects = kept.objects ? &*kept.objects : nullptr;
  if (kept.hasPoints && contents_->keepsPoints && (!counts_ || position_ == pointsAt_)) {
    fed.points = kept.points.view();
  }
  return fed;
}

std::optional<FedMoment> MomentFeed::next() {
  std::optional<FedMoment> fed;
  if (timeLine_) {
    if (auto moment = timeLine_->next()) {
      fed = read(std::move(*moment));
    } else {
      finish();
    }
  } else {
    fed = nextKept();
  }
  if (fed && fed->hasPoints && counts_) {
    if (position_ >= counts_->counts.size()) {
      throw toolkit::Failure(fed->file, "cannot be read again: there is more in it than before");
    }
    fed->counts = &counts_->counts[position_];
  }
  ++position_;
  return fed;
}

std::vector<std::string> MomentFeed::warnings() const {
  return contents_ ? contents_->warnings : std::vector<std::string>();
}

}  // namespace orvantis::engine
