// Recordings, and documents that run over them.

#include <algorithm>
#include <array>
#include <memory>
#include <vector>

#include "CheckedText.h"
#include "Explain.h"
#include "Exports.h"
#include "HostFiles.h"
#include "Options.h"
#include "Recording.h"
#include "RecordingText.h"
#include "Run.h"
#include "Scene.h"
#include "text/JsonText.h"
#include "text/Text.h"

using namespace orvantis;          // NOLINT(google-build-using-namespace)
using namespace orvantis::engine;  // NOLINT(google-build-using-namespace)

using SharedRecording = std::shared_ptr<Recording>;

namespace {

struct Column {
  const void* first;
  std::size_t bytes;
};

template <typename Number>
Column columnOf(const std::vector<Number>& numbers) {
  return {numbers.data(), numbers.size() * sizeof(Number)};
}

// In the order of COLUMNS in core.ts.
Column columnOf(const RunColumns& c, int number) {
  const std::array<Column, 11> columns = {
      columnOf(c.stamps),   columnOf(c.has),         columnOf(c.points),       columnOf(c.counts),
      columnOf(c.excluded), columnOf(c.noReturns),   columnOf(c.occupied),     columnOf(c.occupiedNow),
      columnOf(c.outputs),  columnOf(c.inhabitants), columnOf(c.momentOfEvent)};
  return columns.at(static_cast<std::size_t>(number));
}

std::string listOf(const std::vector<std::string>& texts) {
  std::string list;
  for (const std::string& text : texts) {
    list += (list.empty() ? "" : ",") + toolkit::jsonQuoted(toolkit::toUtf8(text));
  }
  return "[" + list + "]";
}

std::string answerOf(const Explanation& explanation) {
  return R"({"records":)" + explanation.records + R"(,"text":)" + toolkit::jsonQuoted(explanation.text) + "}";
}

}  // namespace

ENGINE_EXPORT SharedRecording* engine_open_recording(const char* files, std::size_t filesSize,
                                                     const char* options, std::size_t optionsSize) {
  return guarded<SharedRecording*>(nullptr, [&] {
    auto recording = std::make_shared<Recording>(hostFilesOf({files, filesSize}),
                                                 recordingOptionsOf({options, optionsSize}));
    answer() = describe(*recording);
    return new SharedRecording(std::move(recording));
  });
}

ENGINE_EXPORT void engine_close_recording(SharedRecording* recording) {
  delete recording;
}

ENGINE_EXPORT int engine_objects_at(const SharedRecording* recording, std::size_t moment) {
  return guarded([&] { answer() = objectsAt(**recording, moment); });
}

// @param wantsIntensities costs more: they are read from the files, and are not kept
ENGINE_EXPORT Scene* engine_open_moment(const SharedRecording* recording, std::size_t moment,
                                        int wantsIntensities) {
  return guarded<Scene*>(nullptr, [&] {
    const std::shared_ptr<const Contents> contents = (*recording)->contents();
    if (wantsIntensities == 0 && contents && contents->keepsPoints && moment < contents->moments.size() &&
        contents->moments[moment].hasPoints) {
      return std::make_unique<Scene>(contents->moments[moment].points.view()).release();
    }
    MomentWalk& walk = (*recording)->walk();
    const toolkit::InputFrame& frame = walk.frameAt(moment);
    const std::vector<float> intensities = wantsIntensities != 0 ? walk.intensities() : std::vector<float>();
    return std::make_unique<Scene>(frame.points, intensities).release();
  });
}

ENGINE_EXPORT Run* engine_start_run(const SharedRecording* recording, const char* text, std::size_t size,
                                    const char* options, std::size_t optionsSize) {
  return guarded<Run*>(nullptr, [&] {
    return std::make_unique<Run>(*recording, configurationOf({text, size}),
                                 sessionOptionsOf({options, optionsSize}))
        .release();
  });
}

// @return 1: there is more, 0: it is done, -1: it failed
ENGINE_EXPORT int engine_step_run(Run* run, int milliseconds) {
  return guarded(-1, [&] { return run->step(std::chrono::milliseconds(milliseconds)) ? 1 : 0; });
}

ENGINE_EXPORT double engine_run_moments(const Run* run) {
  return static_cast<double>(run->moments());
}

ENGINE_EXPORT double engine_run_bytes(const Run* run) {
  return static_cast<double>(run->bytes());
}

ENGINE_EXPORT double engine_run_counted(const Run* run) {
  return static_cast<double>(run->counted());
}

ENGINE_EXPORT int engine_run_field(const Run* run) {
  return run->activeField();
}

ENGINE_EXPORT const void* engine_run_column(const Run* run, int number) {
  return columnOf(run->columns(), number).first;
}

ENGINE_EXPORT std::size_t engine_run_column_size(const Run* run, int number) {
  return columnOf(run->columns(), number).bytes;
}

// Events, summary and warnings.
ENGINE_EXPORT int engine_run_result(const Run* run) {
  return guarded([&] {
    answer() = R"({"events":)" + run->events() + R"(,"summary":)" + run->summary() + R"(,"warnings":)" +
               listOf(run->warnings()) + "}";
  });
}

ENGINE_EXPORT int engine_run_events(const Run* run) {
  return guarded([&] { answer() = run->eventTable(); });
}

ENGINE_EXPORT void engine_close_run(Run* run) {
  delete run;
}

// @param moment below zero: of each zone the one that came nearest to occupying it
ENGINE_EXPORT int engine_explain_zones(const SharedRecording* recording, const char* text, std::size_t size,
                                       const char* options, std::size_t optionsSize, int moment) {
  return guarded([&] {
    const auto at = moment < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(moment));
    answer() = answerOf(explainZones(*recording, configurationOf({text, size}),
                                     sessionOptionsOf({options, optionsSize}), at));
  });
}

// @param isOne whether one track is asked for, or all
ENGINE_EXPORT int engine_explain_line(const SharedRecording* recording, const char* text, std::size_t size,
                                      const char* options, std::size_t optionsSize, std::size_t moment,
                                      const char* line, std::size_t lineSize, int isOne, int track) {
  return guarded([&] {
    answer() = answerOf(explainLine(*recording, configurationOf({text, size}),
                                    sessionOptionsOf({options, optionsSize}), moment, {line, lineSize},
                                    isOne != 0 ? std::optional<std::int32_t>(track) : std::nullopt));
  });
}
