#include "Explanation.h"

#include <array>
#include <cstddef>
#include <utility>
#include <variant>
#include <vector>

#include "Console.h"
#include "DocumentFile.h"
#include "InputConsole.h"
#include "Progress.h"
#include "recording/FrameWarnings.h"
#include "session/Coordinates.h"
#include "session/ExplanationRecords.h"
#include "session/ExplanationText.h"
#include "session/Session.h"
#include "text/Record.h"
#include "text/StampText.h"
#include "text/Text.h"

namespace orvantis::app {
namespace {

using filter::monitor::Stamp;

// The points of one frame, in memory of their own.
using Cloud = std::vector<std::array<double, 3>>;

Points viewOf(const Cloud& cloud) {
  return filter::classify::PointsView<double>::interleaved(cloud.data(), sizeof(Cloud::value_type),
                                                           cloud.size());
}

Cloud copyOf(const Points& points) {
  Cloud cloud;
  cloud.reserve(sizeOf(points));
  std::visit(
      [&cloud](const auto& view) {
        for (std::size_t i = 0; i < view.size; ++i) {
          const Coordinates p = coordinatesOf(view, i);
          cloud.push_back({p.x, p.y, p.z});
        }
      },
      points);
  return cloud;
}

// The results of a recording up to the wanted stamp or to its end.
struct Account {
  std::vector<ZoneMoment> last;  // at the last frame of points
  BestFrames best;
  std::optional<Stamp> objects;  // the stamp of the last objects
  std::optional<LineHistory> line;
};

// Which points are the last ones up to the stamp is known only when a later frame comes, or none. So each
// frame is kept until then.
class Explainer {
 public:
  Explainer(const Configuration& configuration, const ExplainOptions& options)
      : zones_(zonesOf(configuration.detector)),
        session_(configuration, options.session),
        isWhole_(!options.at) {
    if (!options.line.empty()) {
      account_.line.emplace(configuration.lines.at(options.line), options.session.lines.clearance,
                            options.session.forgetAfter, options.track);
    }
  }

  void take(const Moment& moment) {
    std::optional<Points> points;
    if (moment.frame) {
      cloud_ =
          copyOf(moment.frame->points);  // a copy, because reading the next moment may overwrite the frame
      points = viewOf(cloud_);
      file_ = moment.frame->file;
      stamp_ = moment.stamp;
    }
    const SessionFrame frame = session_.take(moment.stamp, points, moment.objectsOrNull());
    if (moment.objects) {
      account_.objects = moment.stamp;
      if (account_.line) {
        account_.line->add(moment.stamp, *moment.objects, crossingsOf(frame), session_.lines());
      }
    }
    if (points && isWhole_) {
      account_.best.add(moments());
    }
  }

  Account finish() {
    if (stamp_ && !isWhole_) {
      account_.last = moments();
    }
    return std::move(account_);
  }

 private:
  std::vector<ZoneMoment> moments() const {
    const Points points = viewOf(cloud_);
    return momentsOf(*stamp_, file_, zones_, session_.explainZones(points), points);
  }

  std::vector<FieldZone> zones_;
  Session session_;
  bool isWhole_;
  Account account_;
  Cloud cloud_;  // the points of the last frame
  std::string file_;
  std::optional<Stamp> stamp_;
};

Account run(const Configuration& configuration, const ExplainOptions& options, const Console& console,
            int& exitCode) {
  const Stamp end = options.at.value_or(Stamp::max());
  TimeLine timeLine = openTimeLine(options.recording, configuration, warningsTo(console));
  Progress progress(console, timeLine.cloudCount());
  Explainer explainer(configuration, options);
  FrameWarnings warnings;
  std::size_t done = 0;
  for (auto moment = timeLine.next(); moment && moment->stamp <= end; moment = timeLine.next()) {
    if (moment->frame) {
      progress.show(done++, timeLine.input(), moment->frame->file);
    }
    if (moment->frame) {
      warnings.add(*moment->frame);
    }
    explainer.take(*moment);
  }
  console.warn(warnings.texts(timeLine));
  exitCode = exitCodeOf(timeLine.input());
  return explainer.finish();
}

void writeJson(const Account& account, const ExplainOptions& options, const Console& console) {
  const auto write = [&console](const Record& record) { console.out << toJson(record) << '\n'; };
  for (const ZoneMoment& moment : options.at ? account.last : account.best.moments()) {
    write(recordOf(moment));
  }
  if (!account.line) {
    return;
  }
  if (options.track) {
    write(recordOf(options.line, account.line->lastStoryOf(*options.track)));
    for (const StampedSighting& sighting : account.line->sightings()) {
      write(recordOf(sighting));
    }
  } else {
    for (const TrackStory& story : account.line->stories()) {
      write(recordOf(options.line, story));
    }
  }
}

void print(const Account& account, const ExplainOptions& options, int minPoints, const Console& console) {
  if (!account.last.empty()) {
    console.out << zonesText(account.last, minPoints, console.colour);
  } else if (!account.best.moments().empty()) {
    console.out << bestFramesText(account.best.moments(), minPoints, console.colour);
  }
  if (!account.line) {
    return;
  }
  console.out << (options.recording.hasClouds() ? "\n" : "");
  if (options.track) {
    console.out << trackText(options.line, *account.objects, account.line->lastStoryOf(*options.track),
                             account.line->sightings(), console.colour);
  } else {
    console.out << tracksText(options.line, account.line->stories(), console.colour);
  }
}

void require(bool isThere, const char* what, const std::optional<Stamp>& at) {
  if (!isThere) {
    const std::string until = at ? " at or before " + toText(*at) + " s" : "";
    throw Failure(std::string("found no ") + what + until);
  }
}

}  // namespace

int explain(const ExplainOptions& options, const Console& console) {
  const Configuration configuration = readConfiguration(options.document, console);
  if (!options.line.empty() && configuration.lines.count(options.line) == 0) {
    throw Failure(options.document, "has no counter line \"" + printable(options.line) + "\"");
  }
  int exitCode = 0;
  const Account account = run(configuration, options, console, exitCode);
  if (options.recording.hasClouds()) {
    const bool hasZones = !zonesOf(configuration.detector).empty();
    require(!hasZones || !account.last.empty() || !account.best.moments().empty(), "points", options.at);
  }
  if (account.line) {
    require(account.objects.has_value(), "tracked objects", options.at);
  }
  if (options.json) {
    writeJson(account, options, console);
  } else {
    print(account, options, configuration.detector.getMinPoints(), console);
  }
  console.flush();
  return exitCode;
}

}  // namespace orvantis::app
