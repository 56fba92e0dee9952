#include "EventLines.h"

#include "Console.h"
#include "SummaryText.h"
#include "session/EventText.h"
#include "session/SummaryRecords.h"
#include "text/Record.h"

namespace orvantis::app {

void EventLines::add(const Moment&, const SessionFrame& frame) {
  for (const Event& event : frame.events) {
    console_.out << (asJson_ ? toJson(recordOf(frame.stamp, event)) : toLine(frame.stamp, event)) << '\n';
  }
  if (!frame.events.empty()) {
    console_.flush();
  }
}

void EventLines::finish(const SessionResult& result) {
  if (asJson_) {
    for (const Record& record : recordsOf(result.summary, result.session, result.zones, result.inputs)) {
      console_.out << toJson(record) << '\n';
    }
  } else {
    printSummary(result.summary, result.session, result.zones, result.inputs, console_);
  }
  console_.flush();
}

}  // namespace orvantis::app
