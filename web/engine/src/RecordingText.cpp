#include "RecordingText.h"

#include <utility>

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>

#include "HostDecoders.h"
#include "recording/NamedRead.h"
#include "recording/OpenRecording.h"
#include "recording/RecordingContents.h"
#include "text/JsonText.h"
#include "text/Text.h"

namespace orvantis::engine {
namespace {

using boost::json::array;
using boost::json::object;
using filter::monitor::TrackedObject;

// A recording without an index is not read here: its topics are those of the first messages.
array topicsOf(const NamedSource& file) {
  array topics;
  const auto source = file.open();
  if (!toolkit::isRecording(source->bytes(0, 16))) {
    return topics;
  }
  const toolkit::RecordingContents contents = toolkit::named(file.name, [&] {
    const toolkit::OpenRecording opened = toolkit::openRecording(*source, decoders());
    return toolkit::contentsOf(*opened.messages);
  });
  for (const toolkit::TopicContents& entry : contents.topics) {
    object topic{{"name", toolkit::toUtf8(entry.topic.name)},
                 {"type", toolkit::toUtf8(entry.topic.type)},
                 {"encoding", toolkit::toUtf8(entry.topic.encoding)},
                 {"messages", entry.messages},
                 {"rate", nullptr},
                 {"holdsClouds", entry.topic.cloud != toolkit::CloudEncoding::none}};
    if (entry.rate) {
      topic["rate"] = *entry.rate;
    }
    topics.push_back(std::move(topic));
  }
  return topics;
}

object toObject(const TrackedObject& tracked) {
  object result{{"id", tracked.id},
                {"className", toolkit::toUtf8(tracked.className)},
                {"reference", nullptr},
                {"zMin", tracked.zMin},
                {"zMax", tracked.zMax}};
  array ring;
  for (const auto& vertex : tracked.footprint.polygon().outer()) {
    ring.push_back(object{{"x", vertex.x()}, {"y", vertex.y()}});
  }
  result["ring"] = std::move(ring);
  if (const auto at = filter::monitor::referencePoint(tracked.footprint)) {
    result["reference"] = object{{"x", at->x()}, {"y", at->y()}};
  }
  return result;
}

}  // namespace

std::string describe(const Recording& recording) {
  array topics;
  for (const NamedSource& cloud : recording.files().clouds) {
    topics.push_back(topicsOf(cloud));
  }
  return toolkit::toJson(object{{"hasClouds", recording.hasClouds()},
                                {"hasTracks", recording.hasTracks()},
                                {"topics", std::move(topics)},
                                {"size", recording.size()}});
}

std::string objectsAt(const Recording& recording, std::size_t moment) {
  const auto& contents = recording.contents();
  const std::size_t size = contents ? contents->moments.size() : 0;
  if (moment >= size) {
    throw toolkit::Failure("moment " + std::to_string(moment) + " is not in the recording, which has " +
                           toolkit::counted(size, "moment"));
  }
  array objects;
  if (const auto& tracked = contents->moments[moment].objects) {
    for (const TrackedObject& entry : *tracked) {
      objects.push_back(toObject(entry));
    }
  }
  return toolkit::toJson(objects);
}

}  // namespace orvantis::engine
