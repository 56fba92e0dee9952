#include "FileInfo.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <string_view>
#include <utility>

#include "Console.h"
#include "Progress.h"
#include "files/FileSource.h"
#include "input/FrameInput.h"
#include "recording/OpenRecording.h"
#include "recording/PointStatistics.h"
#include "recording/ReadError.h"
#include "recording/RecordingContents.h"
#include "recording/TopicChoice.h"
#include "text/Number.h"
#include "text/Record.h"
#include "text/StampText.h"
#include "text/Text.h"

namespace orvantis::app {
namespace {

using filter::monitor::Stamp;

struct FrameInfo {
  std::string topic;
  Stamp stamp{0};
  std::uint64_t points = 0;
};

// What is printed about a file.
struct FileInfo {
  std::string file;
  std::string kind;
  std::vector<Column> columns;
  PointStatistics points;
  std::optional<RecordingContents> recording;
  std::vector<FrameInfo> frames;  // those of a recording
  std::vector<std::string> warnings;
  bool isDamaged = false;
};

RecordingContents contentsOf(const std::string& path) {
  FileSource source(path);
  return readContents(source, builtInDecoders());
}

// The index tells only how long the whole recording is, in which a sensor may have been silent for a time.
void setCloudRates(FileInfo& info) {
  struct Stamps {
    std::uint64_t count = 0;
    Stamp first{0};
    Stamp last{0};
  };
  std::map<std::string_view, Stamps> byTopic;
  for (const FrameInfo& frame : info.frames) {
    Stamps& stamps = byTopic[frame.topic];
    stamps.first = stamps.count == 0 ? frame.stamp : std::min(stamps.first, frame.stamp);
    stamps.last = stamps.count == 0 ? frame.stamp : std::max(stamps.last, frame.stamp);
    ++stamps.count;
  }
  for (TopicContents& topic : info.recording->topics) {
    if (const auto at = byTopic.find(topic.topic.name); at != byTopic.end()) {
      topic.rate = rateOf(at->second.count, at->second.first, at->second.last);
    }
  }
}

void noteThatCloudsAreMissing(FileInfo& info) {
  if (const auto fault = faultOfChoice({}, info.recording->topics)) {
    info.warnings.push_back(printable(info.file) + ": " + *fault);
  }
  if (const auto& damage = info.recording->damage) {
    info.warnings.push_back(printable(info.file) + ": " + toText(*damage));
    info.isDamaged = true;
  }
}

FileInfo infoOf(const std::string& path, const ColumnNames& columns, const Console& console) {
  FileInfo info;
  info.file = path;
  FrameOptions options;
  options.columns = columns;
  if (isRecordingFile(path)) {
    try {
      info.recording = contentsOf(path);
    } catch (const ReadError& error) {
      throw Failure(path, "cannot be read: " + printable(error.what()));
    }
    info.kind = info.recording->kind == RecordingKind::mcap ? "mcap" : "bag";
    // Leaves out topics without messages, which a recorder may declare.
    auto& topics = info.recording->topics;
    topics.erase(std::remove_if(topics.begin(), topics.end(),
                                [](const TopicContents& topic) { return topic.messages == 0; }),
                 topics.end());
    for (const TopicContents& topic : info.recording->topics) {
      if (topic.topic.cloud != CloudEncoding::none) {
        options.topics.insert(topic.topic.name);
      }
    }
    if (options.topics.empty()) {
      noteThatCloudsAreMissing(info);
      return info;
    }
  } else {
    const auto kind = frameKindOf(path);
    info.kind = kind ? nameOf(*kind) : "";
  }
  FrameInput input({path}, options);
  Progress progress(console, std::nullopt);
  while (const auto frame = input.next()) {
    progress.show(info.frames.size(), input, path);
    info.points.add(frame->points);
    if (info.columns.empty()) {
      info.columns = frame->columns;
    }
    if (frame->stamp) {
      info.frames.push_back({frame->topic, *frame->stamp, sizeOf(frame->points)});
    }
  }
  if (info.recording) {
    setCloudRates(info);
  }
  info.warnings = input.warnings();
  info.isDamaged = input.isDamaged();
  return info;
}

Record recordOf(const FileInfo& info) {
  Record record = {{"file", "", info.file},
                   {"kind", "", info.kind},
                   {"points", "", info.points.points()},
                   {"noReturns", "", info.points.noReturns()},
                   {"atOrigin", "", info.points.atOrigin()}};
  std::vector<Record> columns;
  for (const Column& column : info.columns) {
    columns.push_back({{"name", "", column.name},
                       {"type", "", nameOf(column.type)},
                       {"count", "", std::uint64_t{column.count}}});
  }
  record.push_back({"columns", "", std::move(columns)});
  if (const auto& extents = info.points.extents()) {
    Record axes;
    for (std::size_t i = 0; i < 3; ++i) {
      axes.push_back(
          {std::string(1, "xyz"[i]), "", std::vector<double>{(*extents)[i].least, (*extents)[i].greatest}});
    }
    record.push_back({"extents", "", std::move(axes)});
  } else {
    record.push_back({"extents", "", nullptr});
  }
  const auto ground = info.points.ground();
  record.push_back({"ground", "", ground ? Value(*ground) : Value(nullptr)});
  if (info.recording) {
    Record topics;
    for (const TopicContents& topic : info.recording->topics) {
      topics.push_back(
          {topic.topic.name, "", Record{{"type", "", topic.topic.type}, {"messages", "", topic.messages}}});
    }
    record.push_back({"topics", "", std::move(topics)});
    std::vector<Record> frames;
    for (const FrameInfo& frame : info.frames) {
      frames.push_back(
          {{"topic", "", frame.topic}, {"stamp", "", frame.stamp}, {"points", "", frame.points}});
    }
    record.push_back({"frames", "", std::move(frames)});
  }
  return record;
}

void print(const FileInfo& info, const Console& console) {
  std::ostream& out = console.out;
  out << console.bold(printable(info.file)) << '\n';
  out << "  kind        " << info.kind << '\n';
  if (info.recording) {
    for (const TopicContents& topic : info.recording->topics) {
      out << "  topic       " << printable(topic.topic.name) << " (" << printable(topic.topic.type)
          << "): " << counted(topic.messages, "message")
          << (topic.rate ? ", " + toText(*topic.rate, 2) + " Hz" : "") << '\n';
    }
    out << "  frames      " << info.frames.size() << '\n';
    if (!info.frames.empty()) {
      out << "  stamps      " << toText(info.frames.front().stamp) << " s to "
          << toText(info.frames.back().stamp) << " s\n";
    }
  }
  out << "  points      " << info.points.points() << ", " << counted(info.points.noReturns(), "no return")
      << ", " << info.points.atOrigin() << " at (0, 0, 0)\n";
  std::string columns;
  for (const Column& column : info.columns) {
    columns += (columns.empty() ? "" : ", ") + printable(column.name) + " " + nameOf(column.type) +
               (column.count == 1 ? "" : " x " + std::to_string(column.count));
  }
  out << "  columns     " << (columns.empty() ? "none" : columns) << '\n';
  if (const auto& extents = info.points.extents()) {
    for (std::size_t i = 0; i < 3; ++i) {
      out << "  "
          << "xyz"[i] << "           " << toText((*extents)[i].least, 3) << " to "
          << toText((*extents)[i].greatest, 3) << '\n';
    }
  }
  if (const auto ground = info.points.ground()) {
    out << "  most at     z = " << toText(*ground, 1) << '\n';
  }
}

}  // namespace

int info(const InfoOptions& options, const Console& console) {
  constexpr int unreadable = 1;
  constexpr int cut = 4;
  int code = 0;
  bool isFirst = true;
  for (const std::string& file : filesOf(options.files, {})) {
    try {
      const FileInfo found = infoOf(file, options.columns, console);
      if (options.json) {
        console.out << toJson(recordOf(found)) << '\n';
      } else {
        console.out << (isFirst ? "" : "\n");
        print(found, console);
      }
      isFirst = false;
      console.flush();
      for (const std::string& warning : found.warnings) {
        console.warn(warning);
      }
      code = code == 0 && found.isDamaged ? cut : code;
    } catch (const Failure& failure) {
      console.err << "zone-detector: " << failure.what() << '\n';
      code = unreadable;
    }
  }
  return code;
}

}  // namespace orvantis::app
