#include "session/EventText.h"

#include <cstdint>
#include <string_view>

#include "session/SensorZones.h"
#include "text/StampText.h"

namespace orvantis::toolkit {
namespace {

using filter::detection::CounterLineDirectionType;
using filter::monitor::Crossing;
using filter::monitor::ObjectEvent;
using filter::monitor::PointFrame;
using filter::monitor::Stamp;
using filter::monitor::ZoneEvent;
using filter::monitor::ZoneSlot;

std::string levelName(PointFrame::Level level) {
  return level == PointFrame::Level::LOW ? "low" : "high";
}

std::string kindName(ObjectEvent::Kind kind) {
  switch (kind) {
    case ObjectEvent::Kind::Entered:
      return "entered";
    case ObjectEvent::Kind::Left:
      return "left";
    default:
      return "lost";
  }
}

void append(Record& record, const ZoneSlot& slot) {
  record.push_back({"field", "field", std::int64_t{slot.field}});
  record.push_back({"fieldName", "", slot.fieldName});
  record.push_back({"zone", "zone", std::int64_t{slot.zone}});
  record.push_back({"name", "zone_name", slot.zoneName});
}

void append(Record& record, std::int32_t id, const std::string& className) {
  record.push_back({"track", "track", std::int64_t{id}});
  record.push_back({"class", "class", className});
}

void describe(Record& record, const ZoneEvent& event) {
  record.push_back({"event", "event", event.isOccupied ? "occupied" : "cleared"});
  append(record, event.slot);
  record.push_back({"began", "began", event.began});
}

void describe(Record& record, const SensorZoneEvent& of) {
  const ZoneEvent& event = of.event;
  record.push_back({"event", "event", event.isOccupied ? "occupied" : "cleared"});
  record.push_back({"zone", "zone", std::uint64_t{sensorZoneOf(event.slot)}});
  record.push_back({"name", "zone_name", event.slot.zoneName});
  record.push_back({"began", "began", event.began});
}

void describe(Record& record, const OutputEvent& event) {
  record.push_back({"field", "field", std::int64_t{event.field}});
  std::vector<std::string> levels;
  for (const PointFrame::Level level : event.levels) {
    levels.push_back(levelName(level));
  }
  record.push_back({"levels", "event", levels});
}

void describe(Record& record, const ObjectEvent& event) {
  record.push_back({"event", "event", kindName(event.kind)});
  append(record, event.slot);
  append(record, event.id, event.className);
  if (event.kind != ObjectEvent::Kind::Entered) {
    record.push_back({"dwell", "dwell", event.dwell});
  }
  if (event.kind == ObjectEvent::Kind::Lost) {
    record.push_back({"lastSeen", "", event.stamp});
  }
}

void describe(Record& record, const Crossing& event) {
  record.push_back({"", "event", std::string("to ") + sideName(event.to)});
  record.push_back({"line", "line", event.line});
  record.push_back({"from", "", sideName(event.from)});
  record.push_back({"to", "", sideName(event.to)});
  append(record, event.id, event.className);
  record.push_back({"met", "met", event.met});
  record.push_back({"x", "x", event.where.x()});
  record.push_back({"y", "y", event.where.y()});
}

struct TypeName {
  const char* operator()(const ZoneEvent&) const { return "zone"; }
  const char* operator()(const SensorZoneEvent&) const { return "sensorZone"; }
  const char* operator()(const OutputEvent&) const { return "outputs"; }
  const char* operator()(const ObjectEvent&) const { return "object"; }
  const char* operator()(const Crossing&) const { return "crossing"; }
};

// The sentence about an event. A track without a class is called "track".
struct Pattern {
  std::string operator()(const ZoneEvent&) const {
    return R"(zone {field}/{zone} "{name}" {event}, since {began} s)";
  }
  std::string operator()(const SensorZoneEvent&) const {
    return R"(sensor zone {zone} "{name}" {event}, since {began} s)";
  }
  std::string operator()(const OutputEvent&) const { return "outputs of field {field}: {levels}"; }
  std::string operator()(const ObjectEvent& event) const {
    const std::string track = object(event.className);
    switch (event.kind) {
      case ObjectEvent::Kind::Entered:
        return track + R"( entered zone {field}/{zone} "{name}")";
      case ObjectEvent::Kind::Left:
        return track + R"( left zone {field}/{zone} "{name}" after {dwell} s)";
      default:
        return track + R"( lost in zone {field}/{zone} "{name}" after {dwell} s, last seen at {lastSeen} s)";
    }
  }
  std::string operator()(const Crossing& event) const {
    return object(event.className) + R"( crossed line "{line}" from {from} to {to} at {met} s, ({x}, {y}))";
  }

 private:
  static std::string object(const std::string& className) {
    return std::string(className.empty() ? "track" : "{class}") + " {track}";
  }
};

}  // namespace

const char* sideName(CounterLineDirectionType side) {
  return side == CounterLineDirectionType::LEFT ? "left" : "right";
}

Record recordOf(Stamp stamp, const Event& event) {
  Record record = {{"type", "type", std::visit(TypeName(), event)}, {"stamp", "stamp", stamp}};
  std::visit([&record](const auto& what) { describe(record, what); }, event);
  return record;
}

std::string toLine(Stamp stamp, const Event& event) {
  const std::string time = toMilliseconds(stamp) + " s";
  constexpr std::size_t width = 12;
  return std::string(time.size() < width ? width - time.size() : 0, ' ') + time + "  " +
         toSentence(recordOf(stamp, event), std::visit(Pattern(), event));
}

const std::vector<std::string>& eventColumns() {
  static const std::vector<std::string> columns = {"stamp",     "type", "event", "field", "zone",
                                                   "zone_name", "line", "track", "class", "began",
                                                   "dwell",     "met",  "x",     "y"};
  return columns;
}

}  // namespace orvantis::toolkit
