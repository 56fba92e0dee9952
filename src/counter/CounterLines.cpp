#include <exception>

#include <filter/detection/CounterLines.h>
#include <settings/SettingsManager.h>

#include "counter/CounterLineText.h"

namespace orvantis::filter::detection {

CounterLines::CounterLines() = default;

CounterLines::~CounterLines() = default;

bool CounterLines::insert(const CounterLine& line) {
  const std::lock_guard lock(mutex_);
  return insert_(line);
}

// The caller holds the lock.
bool CounterLines::insert_(const CounterLine& line) {
  const auto [entry, inserted] = lines_.try_emplace(line.getName(), line);
  logger_.traceStream().write("CounterLines::insert:", inserted, ":", line);
  if (inserted) {
    return true;
  }
  CounterLine& stored = entry->second;
  stored.setPoints(line.getPoints());
  logger_.traceStream().write("CounterLines::insert:updated:", 0, ":", stored);
  return false;
}

bool CounterLines::erase(const std::string& name) {
  const std::lock_guard lock(mutex_);
  const auto entry = lines_.find(name);
  const bool found = entry != lines_.end();
  logger_.traceStream().write("CounterLines::erase:", found, ":", name);
  if (found) {
    logger_.traceStream().write("CounterLines::erase:", 1, ":", entry->second);
    lines_.erase(entry);
  }
  return found;
}

bool CounterLines::find(const std::string& name) const {
  const std::lock_guard lock(mutex_);
  const auto entry = lines_.find(name);
  const bool found = entry != lines_.end();
  logger_.traceStream().write("CounterLines::find:", found, ":", name);
  if (found) {
    logger_.traceStream().write("CounterLines::find:", 1, ":", entry->second);
  }
  return found;
}

std::map<std::string, CounterLine> CounterLines::clone() const {
  std::map<std::string, CounterLine> copy;
  {
    const std::lock_guard lock(mutex_);
    copy = lines_;
  }
  logger_.traceStream().write("CounterLines::clone:", copy);
  return copy;
}

std::size_t CounterLines::size() const {
  const std::lock_guard lock(mutex_);
  return lines_.size();
}

void CounterLines::load(SettingsManager& settings) {
  const auto document = settings.getChildOptional("CounterLines");
  if (!document) {
    return;
  }
  try {
    const std::lock_guard lock(mutex_);
    lines_.clear();
    for (const auto& [key, entry] : *document) {
      if (key != "CounterLine") {
        continue;
      }
      CounterLine line;
      line.deserialize(entry);
      if (!insert_(line)) {
        logger_.warnStream().write("Duplicate CounterLine:", line);
      }
    }
    logger_.traceStream().write("CounterLines:", lines_);
  } catch (const std::exception& error) {
    logger_.errorStream().write("Unable to load settings: ", error.what());
  }
}

void CounterLines::save(SettingsManager& settings) const {
  boost::property_tree::ptree document;
  {
    const std::lock_guard lock(mutex_);
    for (const auto& [name, line] : lines_) {
      line.serialize(document.add("CounterLine", ""));
    }
  }
  settings.putChild("CounterLines", document);
}

}  // namespace orvantis::filter::detection
