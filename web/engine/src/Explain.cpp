#include "Explain.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "ConsoleText.h"
#include "ExplanationTables.h"
#include "MomentFeed.h"
#include "files/Failure.h"
#include "session/BestFrames.h"
#include "session/ExplanationRecords.h"
#include "session/LineHistory.h"
#include "session/Session.h"
#include "text/StampText.h"
#include "text/Text.h"

namespace orvantis::engine {

using filter::monitor::Crossing;
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

std::vector<Crossing> crossingsOf(const toolkit::SessionFrame& frame) {
  std::vector<Crossing> crossings;
  for (const toolkit::Event& event : frame.events) {
    if (const auto* crossing = std::get_if<Crossing>(&event)) {
      crossings.push_back(*crossing);
    }
  }
  return crossings;
}

// The last of the lives of a track; one that was never seen has a story without sightings.
toolkit::TrackStory storyOf(std::int32_t track, const toolkit::LineHistory& history) {
  toolkit::TrackStory story;
  story.track = track;
  if (track < 0) {
    story.explanation.verdict = filter::monitor::CrossingVerdict::NoIdentity;
  }
  for (const toolkit::TrackStory& candidate : history.stories()) {
    if (candidate.track == track) {
      story = candidate;
    }
  }
  return story;
}

Explanation answer(const std::vector<toolkit::ZoneMoment>& moments, int minPoints) {
  Records records;
  for (const toolkit::ZoneMoment& moment : moments) {
    records.push_back(toolkit::recordOf(moment));
  }
  ConsoleText console;
  if (!moments.empty()) {
    console.console().out << toolkit::printable(moments[0].file) << " at "
                          << toolkit::toText(moments[0].stamp) << " s\n";
    app::printZones(moments, minPoints, console.console());
  }
  return {arrayOf(records), console.text()};
}

}  // namespace

Explanation explainZones(const std::shared_ptr<Recording>& recording,
                         const toolkit::Configuration& configuration, const toolkit::SessionOptions& options,
                         std::size_t moment) {
  const auto wanted = lastPoints(recording->contents().get(), moment);
  if (!wanted) {
    throw Failure("there are no points up to this moment");
  }
  const std::vector<toolkit::FieldZone> zones = toolkit::zonesOf(configuration.detector);
  toolkit::Session session(configuration, options);
  MomentFeed feed(recording, recording->countsOf(ZoneSignatures(configuration.detector)), wanted);
  for (std::size_t i = 0;; ++i) {
    const auto fed = feed.next();
    if (!fed) {
      throw Failure("the recording has become shorter");
    }
    if (fed->counts != nullptr && i != *wanted) {
      session.take(fed->stamp, toolkit::CountedPoints{*fed->counts, fed->pointCount}, fed->objects);
      continue;
    }
    session.take(fed->stamp, fed->points, fed->objects);
    if (i == *wanted) {
      const toolkit::Points& points = fed->points.value();
      return answer(toolkit::momentsOf(fed->stamp, fed->file, zones, session.explainZones(points), points),
                    configuration.detector.getMinPoints());
    }
  }
}

Explanation explainLine(const std::shared_ptr<Recording>& recording,
                        const toolkit::Configuration& configuration, const toolkit::SessionOptions& options,
                        std::size_t moment, const std::string& line, std::optional<std::int32_t> track) {
  const auto found = configuration.lines.find(line);
  if (found == configuration.lines.end()) {
    throw Failure("there is no counter line \"" + toolkit::printable(line) + "\"");
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
      history.add(kept.stamp, *objects, crossingsOf(frame), session.lines());
    }
  }
  if (!last) {
    throw Failure("there are no tracked objects up to this moment");
  }
  Records records;
  ConsoleText console;
  if (track) {
    records.push_back(toolkit::recordOf(line, storyOf(*track, history)));
    for (const toolkit::StampedSighting& sighting : history.sightings()) {
      records.push_back(toolkit::recordOf(sighting));
    }
    app::printTrack(line, *last, storyOf(*track, history), history.sightings(), console.console());
  } else {
    for (const toolkit::TrackStory& story : history.stories()) {
      records.push_back(toolkit::recordOf(line, story));
    }
    app::printTracks(line, history.stories(), console.console());
  }
  return {arrayOf(records), console.text()};
}

}  // namespace orvantis::engine
