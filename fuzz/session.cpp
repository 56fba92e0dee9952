// A document and tracks, with a byte of 0 between them: events, summary, tables, stories of the lines and the
// picture can be made for whatever they hold, and say the same as each other.

#include "session/Session.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <boost/json/parse.hpp>

#include "Check.h"
#include "document/Check.h"
#include "document/FieldZones.h"
#include "files/Failure.h"
#include "recording/TrackReader.h"
#include "session/EventText.h"
#include "session/ExplanationText.h"
#include "session/HeightWarnings.h"
#include "session/LineHistory.h"
#include "session/SessionPlot.h"
#include "session/SessionSummary.h"
#include "session/SessionTables.h"
#include "session/SummaryRecords.h"

namespace {

using namespace orvantis::toolkit;
using orvantis::filter::classify::PointsView;
using orvantis::filter::detection::CounterLineDirectionType;
using orvantis::filter::monitor::Crossing;
using orvantis::filter::monitor::LineTally;
using orvantis::filter::monitor::ZoneEvent;

void checkJson(const std::string& text) {
  ORVANTIS_FUZZ_CHECK(boost::json::parse(text).is_object());
}

// Some points in each box, and one at the origin.
std::vector<std::array<double, 3>> pointsIn(const TrackFrame& frame) {
  std::vector<std::array<double, 3>> points{{0.0, 0.0, 1.0}};
  for (const TrackBox& box : frame.boxes) {
    for (const double z : {0.0, 0.5, 1.0}) {
      points.push_back({box.x, box.y, z});
      points.push_back({box.x + box.length / 2.0, box.y, z});
    }
  }
  return points;
}

// What the events of a session add up to.
struct Sums {
  std::map<std::string, std::array<std::uint64_t, 2>> crossings;  // by line, to the left and to the right
  std::size_t events = 0;
};

void checkEvents(const SessionFrame& frame, Sums& sums) {
  for (const Event& event : frame.events) {
    checkJson(toJson(recordOf(frame.stamp, event)));
    ORVANTIS_FUZZ_CHECK(toLine(frame.stamp, event).find('\n') == std::string::npos);
    if (const auto* crossing = std::get_if<Crossing>(&event)) {
      ORVANTIS_FUZZ_CHECK(crossing->accepted == frame.stamp && crossing->met <= crossing->accepted);
      ++sums.crossings[crossing->line][crossing->to == CounterLineDirectionType::LEFT ? 0 : 1];
    }
    ++sums.events;
  }
}

void run(const Configuration& configuration, const std::string& tracks) {
  Session session(configuration);
  SessionSummary summary;
  const SessionInputs inputs{true, true};
  const std::vector<FieldZone> zones = zonesOf(configuration.detector);
  SessionTables tables(zones);
  tables.leaveOutTimings();
  SessionPlot plot(configuration, inputs);
  HeightWatch heights(zones);
  std::optional<LineHistory> history;
  if (!configuration.lines.empty()) {
    history.emplace(configuration.lines.begin()->second, 0.0,
                    orvantis::filter::monitor::ObjectMonitor::DEFAULT_FORGET_AFTER, std::nullopt);
  }
  Sums sums;
  try {
    TrackReader reader(std::make_unique<std::istringstream>(tracks), "tracks", TracksFormat::Csv);
    while (const std::optional<TrackFrame> objects = reader.next()) {
      const auto points = pointsIn(*objects);
      const auto view = PointsView<double>::interleaved(points[0].data(), sizeof(points[0]), points.size());
      heights.add(view);
      const SessionFrame frame = session.take(objects->stamp, Points(view), &objects->objects);
      ORVANTIS_FUZZ_CHECK(frame.pointCount == points.size());
      checkEvents(frame, sums);
      summary.add(frame);
      plot.add(frame, &objects->objects);
      if (history) {
        history->add(objects->stamp, objects->objects, crossingsOf(frame), session.lines());
      }
      tables.eventRows(frame);
      tables.frameRow(frame, "frame");
      // The same document changes nothing.
      ORVANTIS_FUZZ_CHECK(session.reconfigure(configuration).empty());
    }
  } catch (const Failure&) {
    // What came before the bad row is a session, too.
  }
  for (const LineTally& tally : session.lines().tallies()) {
    const auto& counted = sums.crossings[tally.line];
    ORVANTIS_FUZZ_CHECK(tally.crossings.toLeft == counted[0] && tally.crossings.toRight == counted[1]);
  }
  for (const Record& record : recordsOf(summary, session, zones, inputs)) {
    checkJson(toJson(record));
  }
  tables.zoneTable(summary, session, inputs);
  tables.lineTable(session);
  warningsOf(heights);
  if (history) {
    tracksText("line", history->stories(), false);
  }
  try {
    ORVANTIS_FUZZ_CHECK(plot.draw("plan").substr(0, 5) == "<svg ");
  } catch (const std::runtime_error& error) {
    // The coordinates are too far apart, or too far from the origin.
    ORVANTIS_FUZZ_CHECK(error.what()[0] != '\0');
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const std::size_t end = std::min(text.find('\0'), size);
  const CheckedDocument checked = check(text.substr(0, end));
  if (checked.configuration && end < size) {
    run(*checked.configuration, text.substr(end + 1));
  }
  return 0;
}
