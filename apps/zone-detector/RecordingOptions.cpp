#include "RecordingOptions.h"

#include <cmath>
#include <map>
#include <string>

#include <CLI/CLI.hpp>

#include "Console.h"
#include "OptionChecks.h"
#include "input/Input.h"

namespace orvantis::app {

void addFrameOptions(CLI::App& command, Recording& recording) {
  FrameOptions& frames = recording.frames;
  command
      .add_option("CLOUD", recording.clouds,
                  "frames and recordings, in order; folders of them; - for a list of them")
      ->option_text("...");
  CLI::Option* const sensors =
      command
          .add_option("--sensors", recording.sensors,
                      "list of sensors, each with its pose and its files or topic; - is the standard input")
          ->option_text("SENSORS");
  constexpr double nanosecond = 1e-9;
  command
      .add_option_function<double>(
          "--window",
          [&recording](double seconds) {
            recording.window = filter::monitor::Duration(std::llround(seconds / nanosecond));
          },
          "seconds by which frames of several sensors may differ; 0.05 unless given")
      ->option_text("S")
      ->check(between(0.0, 3600.0))
      ->needs(sensors);
  command
      .add_option(
          "--columns",
          "columns of .bin and text files: their number (x, y, z first), letters (xyzi) or names (t,x,y,z)")
      ->option_text("LIST")
      ->check(parsedBy(toolkit::parseColumnNames))
      ->each([&frames](const std::string& text) { frames.columns = toolkit::parseColumnNames(text); });
  command.add_option("--topic", frames.topics, "topic of the point clouds in recordings; may be given again")
      ->option_text("NAME")
      ->expected(1)
      ->take_all()
      ->excludes(sensors);
  command
      .add_option("--stamp-from",
                  "stamps of recordings: those in the messages, or the times when they were logged")
      ->option_text("header|log")
      ->check(oneOf({"header", "log"}))
      ->each([&frames](const std::string& name) {
        frames.stampFrom = name == "log" ? toolkit::StampFrom::log : toolkit::StampFrom::header;
      });
  command.add_flag("--drop-origin", frames.limits.dropsOrigin,
                   "leave out points at exactly (0, 0, 0), which many drivers write for \"no return\"");
  command.add_option("--min-range", frames.limits.minRange, "leave out points nearer to the sensor")
      ->option_text("M")
      ->check(notBelowZero());
  command.add_option("--max-range", frames.limits.maxRange, "leave out points farther from the sensor")
      ->option_text("M")
      ->check(notBelowZero());
  command
      .add_option("--pose",
                  "pose of the sensor in the frame of the zones: x,y,z,roll,pitch,yaw in metres and degrees")
      ->option_text("POSE")
      ->excludes(sensors)
      ->check(parsedBy(toolkit::Pose::parse))
      ->each([&frames](const std::string& text) { frames.pose = toolkit::Pose::parse(text); });
}

void addRecordingOptions(CLI::App& command, Recording& recording) {
  static const std::map<std::string, toolkit::TracksFormat> formats = {
      {"csv", toolkit::TracksFormat::Csv}, {"kitti", toolkit::TracksFormat::Kitti}};
  addFrameOptions(command, recording);
  CLI::Option* const rate =
      command.add_option("--rate", recording.rate, "frames per second; 10 unless given")
          ->option_text("HZ")
          ->check(aboveZero());
  CLI::Option* const stamps =
      command
          .add_option("--stamps", recording.stamps,
                      "list of frames, each with its stamp, instead of CLOUD; - is the standard input")
          ->option_text("LIST")
          ->excludes(command.get_option("CLOUD"))
          ->excludes(rate);
  command.get_option("--sensors")->excludes(stamps);
  CLI::Option* const tracks =
      command.add_option("--tracks", recording.tracks, "tracked objects; - is the standard input")
          ->option_text("TRACKS");
  command.add_option("--tracks-format", "format of TRACKS; csv unless given")
      ->option_text("csv|kitti")
      ->check(oneOf({"csv", "kitti"}))
      ->each([&recording](const std::string& name) { recording.tracksFormat = formats.at(name); })
      ->needs(tracks);
}

void checkStandardInput(const Recording& recording, const std::string& document) {
  int standardInputs = 0;
  for (const std::string& path : {document, recording.stamps, recording.sensors, recording.tracks}) {
    standardInputs += path == standardInput ? 1 : 0;
  }
  for (const std::string& path : recording.clouds) {
    standardInputs += path == standardInput ? 1 : 0;
  }
  if (standardInputs > 1) {
    throw CLI::ValidationError("only one input can be -, the standard input");
  }
}

void checkRecording(const Recording& recording, const std::string& document) {
  if (!recording.hasClouds() && !recording.hasTracks()) {
    throw CLI::RequiredError("CLOUD, --sensors, --stamps or --tracks");
  }
  checkStandardInput(recording, document);
}

}  // namespace orvantis::app
