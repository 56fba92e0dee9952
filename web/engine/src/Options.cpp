#include "Options.h"

#include <cmath>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>

#include "document/LocatedJson.h"
#include "text/Number.h"
#include "text/Text.h"

namespace orvantis::engine {
namespace {

using toolkit::LocatedNode;

constexpr double endless = std::numeric_limits<double>::infinity();
constexpr double nanosecond = 1e-9;

[[noreturn]] void refuse(const LocatedNode& option, const std::string& allowed) {
  throw std::invalid_argument(option.name + " must be " + allowed);
}

LocatedNode objectOf(std::string_view json) {
  toolkit::LocatedDocument options = toolkit::parseLocated(json);
  if (!options.root || options.root->kind != LocatedNode::Kind::Object) {
    throw std::invalid_argument("the options are not a JSON object");
  }
  return std::move(*options.root);
}

const std::string& textOf(const LocatedNode& option) {
  if (option.kind != LocatedNode::Kind::Text) {
    refuse(option, "a text");
  }
  return option.text;
}

bool truthOf(const LocatedNode& option) {
  if (option.kind != LocatedNode::Kind::Literal || (option.text != "true" && option.text != "false")) {
    refuse(option, "true or false");
  }
  return option.text == "true";
}

double numberOf(const LocatedNode& option) {
  double number = std::nan("");
  const char* const end = option.text.data() + option.text.size();
  if (option.kind != LocatedNode::Kind::Literal ||
      toolkit::readNumber(option.text.data(), end, number).ptr != end) {
    refuse(option, "a number");
  }
  return number;
}

double numberFrom(const LocatedNode& option, double least, double most = endless) {
  const double number = numberOf(option);
  if (!(number >= least && number <= most)) {
    refuse(option, "a number from " + toolkit::toText(least) +
                       (most < endless ? " to " + toolkit::toText(most) : " up"));
  }
  return number;
}

double numberAboveZero(const LocatedNode& option) {
  const double number = numberOf(option);
  if (!(number > 0.0)) {
    refuse(option, "a number above 0");
  }
  return number;
}

bool isFirstOf(const LocatedNode& option, const std::string& first, const std::string& second) {
  const std::string& word = textOf(option);
  if (word != first && word != second) {
    refuse(option, first + " or " + second);
  }
  return word == first;
}

[[noreturn]] void refuseName(const LocatedNode& option) {
  throw std::invalid_argument("there is no option \"" + toolkit::printable(option.name) + "\"");
}

void read(const LocatedNode& option, RecordingOptions& options) {
  toolkit::FrameOptions& frames = options.frames;
  if (option.name == "columns") {
    frames.columns = toolkit::parseColumnNames(textOf(option));
  } else if (option.name == "pose") {
    frames.pose = toolkit::Pose::parse(textOf(option));
  } else if (option.name == "dropOrigin") {
    frames.limits.dropsOrigin = truthOf(option);
  } else if (option.name == "minRange") {
    frames.limits.minRange = numberFrom(option, 0.0);
  } else if (option.name == "maxRange") {
    frames.limits.maxRange = numberFrom(option, 0.0);
  } else if (option.name == "topics") {
    frames.topics.insert(textOf(option));
  } else if (option.name == "stampFrom") {
    frames.stampFrom =
        isFirstOf(option, "header", "log") ? toolkit::StampFrom::header : toolkit::StampFrom::log;
  } else if (option.name == "rate") {
    options.rate = numberAboveZero(option);
  } else if (option.name == "tracksFormat") {
    options.tracksFormat =
        isFirstOf(option, "csv", "kitti") ? toolkit::TracksFormat::Csv : toolkit::TracksFormat::Kitti;
  } else {
    refuseName(option);
  }
}

void read(const LocatedNode& option, toolkit::SessionOptions& options) {
  if (option.name == "clearance") {
    options.lines.clearance = numberFrom(option, 0.0);
  } else if (option.name == "maxSpeed") {
    options.lines.maxSpeed = numberAboveZero(option);
  } else if (option.name == "forgetAfter") {
    constexpr double longest = 4.6e9;
    const double seconds = numberFrom(option, nanosecond, longest);
    options.forgetAfter = filter::monitor::Duration(std::llround(seconds / nanosecond));
  } else if (option.name == "activeField") {
    constexpr int lastField = filter::detection::ZoneDetector::NUM_EVAL_FIELDS - 1;
    const double field = numberFrom(option, 0.0, lastField);
    if (field != std::floor(field)) {
      refuse(option, "a whole number");
    }
    options.activeField = static_cast<int>(field);
  } else {
    refuseName(option);
  }
}

template <typename Options>
Options optionsOf(std::string_view json) {
  Options options;
  const LocatedNode object = objectOf(json);
  for (const LocatedNode& option : object.children) {
    read(option, options);
  }
  return options;
}

}  // namespace

RecordingOptions recordingOptionsOf(std::string_view json) {
  return optionsOf<RecordingOptions>(json);
}

toolkit::SessionOptions sessionOptionsOf(std::string_view json) {
  return optionsOf<toolkit::SessionOptions>(json);
}

}  // namespace orvantis::engine
