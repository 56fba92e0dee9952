#include "Explain.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "MomentFeed.h"
#include "files/Failure.h"
#include "session/BestFrames.h"
#include "session/ExplanationRecords.h"
#include "session/ExplanationText.h"
#include "session/LineHistory.h"
#include "session/Session.h"
#include "text/Text.h"

namespace orvantis::engine {

using filter::monitor::Stamp;
using toolkit::Failure;

namespace {

using Records = std::vector<toolkit::Record>;

std::string arrayOf(const Records& records) {
  std::string text;
  for (const toolkit::Record& record : records) {
    text += (text.empty() ? "" : ",") + toolkit::toJson(record);
  }
  return "[" + text + "]";
}

// The last moment with points, of those up to one.
std::optional<std::size_t> lastPoints(const Contents* contents, std::size_t moment) {
  if (contents == nullptr) {
    throw Failure("the recording did not run yet");
  }
  for (std::size_t i = std::min(moment + 1, contents->moments.size()); i > 0; --i) {
    if (contents->moments[i - 1].hasPoints) {
      return i - 1;
    }
  }
  return std::nullopt;
}

std::string recordsOf(const std::vector<toolkit::ZoneMoment>& moments) {
  Records records;
  for (const toolkit::ZoneMoment& moment : moments) {
    records.push_back(toolkit::recordOf(moment));
  }
  return arrayOf(records);
}

// Takes a recording moment by moment, and gives what its zones were at those whose points are there.
class ZoneExplainer {
 public:
  ZoneExplainer(const toolkit::Configuration& configuration, const toolkit::SessionOptions& options)
      : zones_(toolkit::zonesOf(configuration.detector)), session_(configuration, options) {}

  void pass(const FedMoment& moment) {
    session_.take(moment.stamp, toolkit::CountedPoints{*moment.counts, moment.pointCount}, moment.objects);
  }

  std::vector<toolkit::ZoneMoment> take(const FedMoment& moment) {
    session_.take(moment.stamp, moment.points, moment.objects);
    if (!moment.points) {
      return {};
    }
    return toolkit::momentsOf(moment.stamp, moment.file, zones_, session_.explainZones(*moment.points),
                              *moment.points);
  }

 private:
  std::vector<toolkit::FieldZone> zones_;
  toolkit::Session session_;
};

Explanation explainBest(const std::shared_ptr<Recording>& recording,
                        const toolkit::Configuration& configuration, const toolkit::SessionOptions& options) {
  ZoneExplainer explainer(configuration, options);
  toolkit::BestFrames best;
  MomentFeed feed(recording, nullptr);
  while (const auto fed = feed.next()) {
    const auto moments = explainer.take(*fed);
    if (!moments.empty()) {
      best.add(moments);
    }
  }
  const int minPoints = configuration.detector.getMinPoints();
  return {recordsOf(best.moments()),
          best.moments().empty() ? "" : toolkit::bestFramesText(best.moments(), minPoints, false)};
}

}  // namespace

Explanation explainZones(const std::shared_ptr<Recording>& recording,
                         const toolkit::Configuration& configuration, const toolkit::SessionOptions& options,
                         std::optional<std::size_t> moment) {
  if (!moment) {
    return explainBest(recording, configuration, options);
  }
  const auto wanted = lastPoints(recording->contents().get(), *moment);
  if (!wanted) {
    throw Failure("found no points up to this moment");
  }
  ZoneExplainer explainer(configuration, options);
  MomentFeed feed(recording, recording->countsOf(ZoneSignatures(configuration.detector)), wanted);
  for (std::size_t i = 0; const auto fed = feed.next(); ++i) {
    if (i < *wanted && fed->counts != nullptr) {
      explainer.pass(*fed);
      continue;
    }
    const auto moments = explainer.take(*fed);
    if (i < *wanted) {
      continue;
    }
    return {recordsOf(moments), toolkit::zonesText(moments, configuration.detector.getMinPoints(), false)};
  }
  throw Failure("the recording has become shorter");
}

Explanation explainLine(const std::shared_ptr<Recording>& recording,
                        const toolkit::Configuration& configuration, const toolkit::SessionOptions& options,
                        std::size_t moment, const std::string& line, std::optional<std::int32_t> track) {
  const auto found = configuration.lines.find(line);
  if (found == configuration.lines.end()) {
    throw Failure("the document", "has no counter line \"" + toolkit::printable(line) + "\"");
  }
  const std::shared_ptr<const Contents> contents = recording->contents();
  if (!contents) {
    throw Failure("the recording did not run yet");
  }
  toolkit::Session session(configuration, options);
  toolkit::LineHistory history(found->second, options.lines.clearance, options.forgetAfter, track);
  std::optional<Stamp> last;
  const std::size_t end = std::min(moment + 1, contents->moments.size());
  for (std::size_t i = 0; i < end; ++i) {
    // Points play no part at a line, but time goes on with them.
    const KeptMoment& kept = contents->moments[i];
    const auto* objects = kept.objects ? &*kept.objects : nullptr;
    const toolkit::SessionFrame frame = session.take(kept.stamp, std::nullopt, objects);
    if (objects != nullptr) {
      last = kept.stamp;
      history.add(kept.stamp, *objects, toolkit::crossingsOf(frame), session.lines());
    }
  }
  if (!last) {
    throw Failure("found no tracked objects up to this moment");
  }
  Records records;
  std::string text;
  if (track) {
    const toolkit::TrackStory story = history.lastStoryOf(*track);
    records.push_back(toolkit::recordOf(line, story));
    for (const toolkit::StampedSighting& sighting : history.sightings()) {
      records.push_back(toolkit::recordOf(sighting));
    }
    text = toolkit::trackText(line, *last, story, history.sightings(), false);
  } else {
    for (const toolkit::TrackStory& story : history.stories()) {
      records.push_back(toolkit::recordOf(line, story));
    }
    text = toolkit::tracksText(line, history.stories(), false);
  }
  return {arrayOf(records), text};
}

}  // namespace orvantis::engine
