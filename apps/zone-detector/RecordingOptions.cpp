#include "RecordingOptions.h"

#include <map>
#include <string>

#include <CLI/CLI.hpp>

#include "Input.h"
#include "OptionChecks.h"

namespace orvantis::app {

void addRecordingOptions(CLI::App& command, Recording& recording) {
  static const std::map<std::string, toolkit::TracksFormat> formats = {
      {"csv", toolkit::TracksFormat::Csv}, {"kitti", toolkit::TracksFormat::Kitti}};
  CLI::Option* const clouds =
      command.add_option("CLOUD", recording.clouds, "frames, in order")->option_text("...");
  CLI::Option* const rate = command.add_option("--rate", recording.rate, "frames a second; 10 unless given")
                                ->option_text("HZ")
                                ->check(aboveZero());
  command
      .add_option("--stamps", recording.stamps,
                  "list of frames, each with its stamp, in place of CLOUD; - is the standard input")
      ->option_text("LIST")
      ->excludes(clouds)
      ->excludes(rate);
  CLI::Option* const tracks =
      command.add_option("--tracks", recording.tracks, "tracked objects; - is the standard input")
          ->option_text("TRACKS");
  command.add_option("--tracks-format", "csv unless given")
      ->option_text("csv|kitti")
      ->check(oneOf({"csv", "kitti"}))
      ->each([&recording](const std::string& name) { recording.tracksFormat = formats.at(name); })
      ->needs(tracks);
}

void checkRecording(const Recording& recording, const std::string& document) {
  if (!recording.hasClouds() && !recording.hasTracks()) {
    throw CLI::RequiredError("CLOUD, --stamps or --tracks");
  }
  int standardInputs = 0;
  for (const std::string& path : {document, recording.stamps, recording.tracks}) {
    standardInputs += path == standardInput ? 1 : 0;
  }
  if (standardInputs > 1) {
    throw CLI::ValidationError("only one input can be -, the standard input");
  }
}

}  // namespace orvantis::app
