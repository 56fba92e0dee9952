#include "session/EventText.h"

#include <utility>

#include <boost/json/array.hpp>

#include "text/Number.h"
#include "text/StampText.h"
#include "text/Text.h"

namespace orvantis::toolkit {
namespace {

using boost::json::array;
using boost::json::object;
using filter::detection::CounterLineDirectionType;
using filter::monitor::Crossing;
using filter::monitor::ObjectEvent;
using filter::monitor::PointFrame;
using filter::monitor::Stamp;
using filter::monitor::ZoneEvent;
using filter::monitor::ZoneSlot;

const char* levelName(PointFrame::Level level) {
  return level == PointFrame::Level::LOW ? "low" : "high";
}

const char* kindName(ObjectEvent::Kind kind) {
  switch (kind) {
    case ObjectEvent::Kind::Entered:
      return "entered";
    case ObjectEvent::Kind::Left:
      return "left";
    default:
      return "lost";
  }
}

const char* stateName(const ZoneEvent& event) {
  return event.isOccupied ? "occupied" : "cleared";
}

std::string nameOf(const ZoneSlot& slot) {
  return "zone " + std::to_string(slot.field) + "/" + std::to_string(slot.zone) + " \"" +
         printable(slot.zoneName) + "\"";
}

std::string nameOf(const std::string& className, std::int32_t id) {
  return (className.empty() ? "track" : printable(className)) + " " + std::to_string(id);
}

std::string sentence(const ZoneEvent& event) {
  return nameOf(event.slot) + " " + stateName(event) + ", since " + toMilliseconds(event.began) + " s";
}

std::string sentence(const OutputEvent& event) {
  std::string text = "outputs of field " + std::to_string(event.field) + ":";
  for (const PointFrame::Level level : event.levels) {
    text += std::string(" ") + levelName(level);
  }
  return text;
}

std::string sentence(const ObjectEvent& event) {
  const std::string object = nameOf(event.className, event.id);
  const std::string dwell = toMilliseconds(event.dwell) + " s";
  switch (event.kind) {
    case ObjectEvent::Kind::Entered:
      return object + " entered " + nameOf(event.slot);
    case ObjectEvent::Kind::Left:
      return object + " left " + nameOf(event.slot) + " after " + dwell;
    default:
      return object + " lost in " + nameOf(event.slot) + " after " + dwell + ", last seen at " +
             toMilliseconds(event.stamp) + " s";
  }
}

std::string sentence(const Crossing& event) {
  return nameOf(event.className, event.id) + " crossed line \"" + printable(event.line) + "\" from " +
         sideName(event.from) + " to " + sideName(event.to) + " at " + toMilliseconds(event.met) + " s, (" +
         toText(event.where.x(), 3) + ", " + toText(event.where.y(), 3) + ")";
}

object begun(const char* type, Stamp stamp) {
  return {{"type", type}, {"stamp", toSeconds(stamp)}};
}

void append(object& target, const ZoneSlot& slot) {
  target["field"] = slot.field;
  target["fieldName"] = slot.fieldName;
  target["zone"] = slot.zone;
  target["name"] = slot.zoneName;
}

object described(Stamp stamp, const ZoneEvent& event) {
  object result = begun("zone", stamp);
  result["event"] = stateName(event);
  append(result, event.slot);
  result["began"] = toSeconds(event.began);
  return result;
}

object described(Stamp stamp, const OutputEvent& event) {
  object result = begun("outputs", stamp);
  result["field"] = event.field;
  array levels;
  for (const PointFrame::Level level : event.levels) {
    levels.push_back(levelName(level));
  }
  result["levels"] = std::move(levels);
  return result;
}

object described(Stamp stamp, const ObjectEvent& event) {
  object result = begun("object", stamp);
  result["event"] = kindName(event.kind);
  append(result, event.slot);
  result["track"] = event.id;
  result["class"] = event.className;
  if (event.kind != ObjectEvent::Kind::Entered) {
    result["dwell"] = toSeconds(event.dwell);
  }
  if (event.kind == ObjectEvent::Kind::Lost) {
    result["lastSeen"] = toSeconds(event.stamp);
  }
  return result;
}

object described(Stamp stamp, const Crossing& event) {
  object result = begun("crossing", stamp);
  result["line"] = event.line;
  result["from"] = sideName(event.from);
  result["to"] = sideName(event.to);
  result["track"] = event.id;
  result["class"] = event.className;
  result["met"] = toSeconds(event.met);
  result["x"] = event.where.x();
  result["y"] = event.where.y();
  return result;
}

using Cells = std::vector<std::string>;

Cells cells(const ZoneEvent& e) {
  return {"zone",
          stateName(e),
          std::to_string(e.slot.field),
          std::to_string(e.slot.zone),
          e.slot.zoneName,
          "",
          "",
          "",
          toText(e.began),
          "",
          "",
          "",
          ""};
}

Cells cells(const OutputEvent& e) {
  std::string levels;
  for (const PointFrame::Level level : e.levels) {
    levels += (levels.empty() ? "" : " ") + std::string(levelName(level));
  }
  return {"outputs", levels, std::to_string(e.field), "", "", "", "", "", "", "", "", "", ""};
}

Cells cells(const ObjectEvent& e) {
  const bool isOver = e.kind != ObjectEvent::Kind::Entered;
  return {"object",
          kindName(e.kind),
          std::to_string(e.slot.field),
          std::to_string(e.slot.zone),
          e.slot.zoneName,
          "",
          std::to_string(e.id),
          e.className,
          "",
          isOver ? toText(e.dwell) : "",
          "",
          "",
          ""};
}

Cells cells(const Crossing& e) {
  return {"crossing",
          std::string("to ") + sideName(e.to),
          "",
          "",
          "",
          e.line,
          std::to_string(e.id),
          e.className,
          "",
          "",
          toText(e.met),
          toText(e.where.x()),
          toText(e.where.y())};
}

}  // namespace

const char* sideName(CounterLineDirectionType side) {
  return side == CounterLineDirectionType::LEFT ? "left" : "right";
}

std::string toLine(Stamp stamp, const Event& event) {
  const std::string time = toMilliseconds(stamp) + " s";
  constexpr std::size_t width = 12;
  return std::string(time.size() < width ? width - time.size() : 0, ' ') + time + "  " +
         std::visit([](const auto& what) { return sentence(what); }, event);
}

object toObject(Stamp stamp, const Event& event) {
  return std::visit([stamp](const auto& what) { return described(stamp, what); }, event);
}

const std::vector<std::string>& eventColumns() {
  static const Cells columns = {"stamp", "type",  "event", "field", "zone", "zone_name", "line",
                                "track", "class", "began", "dwell", "met",  "x",         "y"};
  return columns;
}

Cells toCells(Stamp stamp, const Event& event) {
  Cells result = std::visit([](const auto& what) { return cells(what); }, event);
  result.insert(result.begin(), toText(stamp));
  return result;
}

}  // namespace orvantis::toolkit
