#include "recording/RecordingContents.h"

#include <algorithm>

#include "text/Number.h"
#include "text/Text.h"

namespace orvantis::toolkit {
namespace {

std::optional<Damage> readAll(const OpenRecording& opened) {
  try {
    while (opened.messages->next()) {
    }
  } catch (const ReadError& error) {
    return damageOf(error, opened);
  }
  return std::nullopt;
}

RecordingContents fromIndex(const MessageReader& reader) {
  RecordingContents contents;
  contents.isFromIndex = true;
  contents.messages = reader.index()->messages;
  contents.first = reader.index()->first;
  contents.last = reader.index()->last;
  for (const Topic& topic : reader.topics()) {
    const std::uint64_t messages = topic.messages.value_or(0);
    contents.topics.push_back({topic, messages, rateOf(messages, contents.first, contents.last)});
  }
  return contents;
}

RecordingContents asRead(const MessageReader& reader) {
  RecordingContents contents;
  for (const Topic& topic : reader.topics()) {
    contents.topics.push_back({topic, topic.read, rateOf(topic.read, topic.firstLogged, topic.lastLogged)});
    if (topic.read != 0) {
      contents.first =
          contents.messages == 0 ? topic.firstLogged : std::min(contents.first, topic.firstLogged);
      contents.last = contents.messages == 0 ? topic.lastLogged : std::max(contents.last, topic.lastLogged);
      contents.messages += topic.read;
    }
  }
  return contents;
}

std::string inWords(const TopicContents& contents) {
  const Topic& topic = contents.topic;
  std::string text = printable(topic.name) + " (" + (topic.type.empty() ? "no type" : printable(topic.type));
  if (topic.cloud == CloudEncoding::none && topic.encoding != "cdr" && topic.encoding != "ros1") {
    text += " as " + printable(topic.encoding);  // why a topic of the right type may not be read
  }
  text += ", " + counted(contents.messages, "message");
  if (contents.rate) {
    text += ", " + toText(*contents.rate, 2) + " Hz";
  }
  return text + ")";
}

}  // namespace

Damage damageOf(const ReadError& error, const OpenRecording& opened) {
  const std::string place = opened.unfolded ? "; the byte is one of what the file unfolds to" : "";
  return {error.place().byte, error.what() + place};
}

std::string toText(const Damage& damage) {
  return toText(atByte(damage.byte)) + ": " + printable(damage.reason) + "; what comes before it was read";
}

std::optional<double> rateOf(std::uint64_t messages, filter::monitor::Stamp first,
                             filter::monitor::Stamp last) {
  const double seconds = std::chrono::duration<double>(last - first).count();
  if (messages < 2 || !(seconds > 0)) {
    return std::nullopt;
  }
  return static_cast<double>(messages - 1) / seconds;
}

bool isIndexed(const MessageReader& reader) {
  std::uint64_t messages = 0;
  for (const Topic& topic : reader.topics()) {
    messages += topic.messages.value_or(0);
  }
  return reader.index() && reader.index()->messages == messages;
}

RecordingContents contentsOf(const MessageReader& reader) {
  return isIndexed(reader) ? fromIndex(reader) : asRead(reader);
}

RecordingContents readContents(ByteSource& source, const Decoders& decoders) {
  const OpenRecording opened = openRecording(source, decoders);
  std::optional<Damage> damage;
  if (!isIndexed(*opened.messages)) {
    damage = readAll(opened);
  }
  RecordingContents contents = contentsOf(*opened.messages);
  contents.kind = opened.kind;
  contents.damage = std::move(damage);
  return contents;
}

std::string listOf(const std::vector<TopicContents>& topics) {
  constexpr std::size_t most = 20;
  std::string list;
  for (std::size_t i = 0; i < std::min(topics.size(), most); ++i) {
    list += (i == 0 ? "" : ", ") + inWords(topics[i]);
  }
  return topics.size() <= most ? list : list + " and " + std::to_string(topics.size() - most) + " more";
}

}  // namespace orvantis::toolkit
