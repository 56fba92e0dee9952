#include "Run.h"

#include <utility>

#include "session/EventText.h"
#include "session/HeightWarnings.h"
#include "session/SummaryRecords.h"
#include "text/JsonText.h"
#include "text/Record.h"

namespace orvantis::engine {

using filter::monitor::NUM_ZONE_SLOTS;
using filter::monitor::PointFrame;
using toolkit::SessionFrame;

namespace {

template <typename Flags>
std::uint32_t bitsOf(const Flags& flags) {
  std::uint32_t bits = 0;
  for (std::size_t i = 0; i < flags.size(); ++i) {
    bits |= flags[i] ? std::uint32_t{1} << i : 0;
  }
  return bits;
}

}  // namespace

Run::Run(std::shared_ptr<Recording> recording, toolkit::Configuration configuration,
         const toolkit::SessionOptions& options)
    : recording_(std::move(recording)),
      configuration_(std::move(configuration)),
      zones_(toolkit::zonesOf(configuration_.detector)),
      inputs_{recording_->hasClouds(), recording_->hasTracks()},
      signatures_(configuration_.detector),
      known_(recording_->countsOf(signatures_)),
      feed_(recording_, known_),
      session_(configuration_, options),
      tables_(zones_),
      heights_(known_ ? known_->heights : toolkit::HeightWatch(zones_)),
      activeField_(options.activeField.value_or(configuration_.detector.getEvaluationFieldIndex())),
      eventTable_(tables_.eventHeader()) {}

bool Run::step(std::chrono::milliseconds budget) {
  const auto begin = std::chrono::steady_clock::now();
  do {
    const auto moment = feed_.next();
    if (!moment) {
      finish();
      return false;
    }
    take(*moment);
  } while (std::chrono::steady_clock::now() - begin < budget);
  return true;
}

void Run::take(const FedMoment& moment) {
  SessionFrame frame;
  if (moment.counts != nullptr) {
    frame = session_.take(moment.stamp, toolkit::CountedPoints{*moment.counts, moment.pointCount},
                          moment.objects);
  } else {
    frame = session_.take(moment.stamp, moment.points, moment.objects);
    if (moment.points) {
      heights_.add(*moment.points);
      ++numCounted_;
    }
  }
  // A page shows no times that differ from run to run.
  frame.taken = filter::monitor::Duration(0);
  summary_.add(frame);
  eventTable_ += tables_.eventRows(frame);
  noteEvents(frame);
  note(frame, moment);
}

void Run::noteEvents(const SessionFrame& frame) {
  for (const toolkit::Event& event : frame.events) {
    events_ += events_.empty() ? "" : ",";
    events_ += "{\"line\":" + toolkit::jsonQuoted(toolkit::toLine(frame.stamp, event)) +
               ",\"record\":" + toolkit::toJson(toolkit::recordOf(frame.stamp, event)) + "}";
    columns_.momentOfEvent.push_back(static_cast<std::uint32_t>(moments()));
  }
}

void Run::note(const SessionFrame& frame, const FedMoment& moment) {
  const PointFrame points = frame.points.value_or(PointFrame());
  RunColumns& c = columns_;
  c.stamps.push_back(frame.stamp.count());
  c.has.push_back(
      static_cast<std::uint8_t>((moment.hasPoints ? 1 : 0) + (moment.objects != nullptr ? 2 : 0)));
  c.points.push_back(static_cast<std::uint32_t>(moment.pointCount));
  c.counts.insert(c.counts.end(), points.counts.begin(), points.counts.end());
  c.excluded.push_back(static_cast<std::uint32_t>(points.excluded));
  c.noReturns.push_back(static_cast<std::uint32_t>(points.noReturns));
  c.occupied.push_back(bitsOf(points.isOccupied));
  c.occupiedNow.push_back(bitsOf(points.isOccupiedNow));
  std::uint8_t outputs = 0;
  for (std::size_t i = 0; i < points.outputs.size(); ++i) {
    const bool isHigh = frame.points && points.outputs[i] == PointFrame::Level::HIGH;
    outputs = static_cast<std::uint8_t>(outputs | (isHigh ? 1U << i : 0U));
  }
  c.outputs.push_back(outputs);
  for (std::size_t slot = 0; slot < NUM_ZONE_SLOTS; ++slot) {
    c.inhabitants.push_back(frame.objects ? static_cast<std::uint32_t>(frame.objects->inside[slot]) : 0);
  }
  counts_.push_back({points.counts, points.excluded, points.noReturns});
}

void Run::finish() {
  if (!known_) {
    recording_->keep({signatures_, std::move(counts_), heights_});
  }
}

std::string Run::summary() const {
  std::string text;
  for (const toolkit::Record& record : toolkit::recordsOf(summary_, session_, zones_, inputs_)) {
    text += (text.empty() ? "" : ",") + toolkit::toJson(record);
  }
  return "[" + text + "]";
}

std::vector<std::string> Run::warnings() const {
  std::vector<std::string> warnings = feed_.warnings();
  if (inputs_.points) {
    const std::vector<std::string> ofHeights = toolkit::warningsOf(heights_);
    warnings.insert(warnings.end(), ofHeights.begin(), ofHeights.end());
  }
  return warnings;
}

}  // namespace orvantis::engine
