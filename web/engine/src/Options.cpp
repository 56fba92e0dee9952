#include "Options.h"

#include <cmath>
#include <functional>
#include <limits>
#include <map>
#include <stdexcept>
#include <string>

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/parse.hpp>

#include "text/Text.h"

namespace orvantis::engine {
namespace {

using boost::json::value;

using Readers = std::map<std::string_view, std::function<void(const value&)>>;

[[noreturn]] void refuse(std::string_view key, const std::string& allowed) {
  throw std::invalid_argument(std::string(key) + " must be " + allowed);
}

void readAll(std::string_view json, const Readers& readers) {
  boost::system::error_code error;
  const value options = boost::json::parse(boost::json::string_view(json.data(), json.size()), error);
  if (error || !options.is_object()) {
    throw std::invalid_argument("the options are not a JSON object");
  }
  for (const auto& entry : options.get_object()) {
    const auto found = readers.find(std::string_view(entry.key().data(), entry.key().size()));
    if (found == readers.end()) {
      throw std::invalid_argument("there is no option \"" + toolkit::printable(std::string(entry.key())) +
                                  "\"");
    }
    found->second(entry.value());
  }
}

std::string textOf(std::string_view key, const value& from) {
  if (!from.is_string()) {
    refuse(key, "a text");
  }
  return {from.get_string().data(), from.get_string().size()};
}

// @param least what the number must not be below; `isAbove`: must be above
double numberOf(std::string_view key, const value& from, double least, bool isAbove, double most) {
  const double number = from.is_number() ? from.to_number<double>() : std::nan("");
  if (!(isAbove ? number > least : number >= least) || !(number <= most)) {
    refuse(key, std::string("a number ") + (isAbove ? "above " : "from ") + std::to_string(least) + " on");
  }
  return number;
}

constexpr double endless = std::numeric_limits<double>::infinity();

bool isFirst(std::string_view key, const value& from, const std::string& first, const std::string& second) {
  const std::string word = textOf(key, from);
  if (word != first && word != second) {
    refuse(key, first + " or " + second);
  }
  return word == first;
}

}  // namespace

RecordingOptions recordingOptionsOf(std::string_view json) {
  RecordingOptions options;
  FrameOptions& frames = options.frames;
  readAll(
      json,
      {{"columns", [&](const value& v) { frames.columns = toolkit::parseColumnNames(textOf("columns", v)); }},
       {"pose", [&](const value& v) { frames.pose = toolkit::Pose::parse(textOf("pose", v)); }},
       {"dropOrigin",
        [&](const value& v) {
          if (!v.is_bool()) {
            refuse("dropOrigin", "true or false");
          }
          frames.limits.dropsOrigin = v.get_bool();
        }},
       {"minRange",
        [&](const value& v) { frames.limits.minRange = numberOf("minRange", v, 0.0, false, endless); }},
       {"maxRange",
        [&](const value& v) { frames.limits.maxRange = numberOf("maxRange", v, 0.0, false, endless); }},
       {"topics",
        [&](const value& v) {
          if (!v.is_array()) {
            refuse("topics", "a list of texts");
          }
          for (const value& topic : v.get_array()) {
            frames.topics.push_back(textOf("topics", topic));
          }
        }},
       {"stampFrom",
        [&](const value& v) {
          frames.stampFrom =
              isFirst("stampFrom", v, "header", "log") ? toolkit::StampFrom::header : toolkit::StampFrom::log;
        }},
       {"rate", [&](const value& v) { options.rate = numberOf("rate", v, 0.0, true, endless); }},
       {"tracksFormat", [&](const value& v) {
          options.tracksFormat = isFirst("tracksFormat", v, "csv", "kitti") ? toolkit::TracksFormat::Csv
                                                                            : toolkit::TracksFormat::Kitti;
        }}});
  return options;
}

toolkit::SessionOptions sessionOptionsOf(std::string_view json) {
  toolkit::SessionOptions options;
  constexpr double nanosecond = 1e-9;
  constexpr double longest = 4.6e9;
  readAll(json,
          {{"clearance",
            [&](const value& v) { options.lines.clearance = numberOf("clearance", v, 0.0, false, endless); }},
           {"maxSpeed",
            [&](const value& v) { options.lines.maxSpeed = numberOf("maxSpeed", v, 0.0, true, endless); }},
           {"forgetAfter",
            [&](const value& v) {
              const double seconds = numberOf("forgetAfter", v, nanosecond, false, longest);
              options.forgetAfter = filter::monitor::Duration(std::llround(seconds / nanosecond));
            }},
           {"activeField", [&](const value& v) {
              constexpr double lastField = filter::detection::ZoneDetector::NUM_EVAL_FIELDS - 1;
              const double field = numberOf("activeField", v, 0.0, false, lastField);
              if (field != std::floor(field)) {
                refuse("activeField", "a whole number");
              }
              options.activeField = static_cast<int>(field);
            }}});
  return options;
}

}  // namespace orvantis::engine
