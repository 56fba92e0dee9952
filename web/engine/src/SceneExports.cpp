// Points under the pencil.

#include <algorithm>
#include <array>
#include <memory>
#include <stdexcept>

#include "CheckedText.h"
#include "CloudStream.h"
#include "Exports.h"
#include "HostFiles.h"
#include "Options.h"
#include "Scene.h"
#include "drawing/SitePlan.h"
#include "files/Failure.h"

using namespace orvantis;          // NOLINT(google-build-using-namespace)
using namespace orvantis::engine;  // NOLINT(google-build-using-namespace)

// @param file an object with name, file and size
ENGINE_EXPORT Scene* engine_open_frame(const char* file, std::size_t fileSize, const char* options,
                                       std::size_t optionsSize) {
  return guarded<Scene*>(nullptr, [&] {
    const NamedSource source = hostFileOf({file, fileSize});
    CloudStream stream({source}, {}, recordingOptionsOf({options, optionsSize}).frames);
    const auto frame = stream.next();
    if (!frame) {
      throw toolkit::Failure(source.name, "cannot be read: there is no frame in it");
    }
    return std::make_unique<Scene>(*frame, stream.intensities()).release();
  });
}

ENGINE_EXPORT Scene* engine_open_points(const float* x, const float* y, const float* z, std::size_t size) {
  return guarded<Scene*>(nullptr, [&] {
    return std::make_unique<Scene>(filter::classify::PointsView<float>::separate(x, y, z, size)).release();
  });
}

ENGINE_EXPORT void engine_close_scene(Scene* scene) {
  delete scene;
}

ENGINE_EXPORT int engine_describe_scene(const Scene* scene) {
  return guarded([&] { answer() = scene->description(); });
}

ENGINE_EXPORT std::size_t engine_scene_size(const Scene* scene) {
  return scene->points().size();
}

// Three floats for each point; until the next call of this or of the heights.
ENGINE_EXPORT const float* engine_scene_positions(const Scene* scene) {
  static std::vector<float> positions;
  return guarded<const float*>(nullptr, [&] {
    positions = scene->positions();
    return positions.data();
  });
}

// A float for each point; null where the scene has none.
ENGINE_EXPORT const float* engine_scene_intensities(const Scene* scene) {
  const std::vector<float>& values = scene->points().values();
  return values.empty() ? nullptr : values.data();
}

// A number of points for each bin; until the next call.
ENGINE_EXPORT const std::uint32_t* engine_scene_heights(const Scene* scene, std::size_t bins) {
  static std::vector<std::uint32_t> numbers;
  return guarded<const std::uint32_t*>(nullptr, [&] {
    constexpr std::size_t mostBins = 10000;
    if (bins == 0 || bins > mostBins) {
      throw std::invalid_argument("the number of bins must be 1 to 10000");
    }
    numbers = scene->heights(bins);
    return numbers.data();
  });
}

// Counts by a document, whose findings and content are told by `engine_check`.
// @return how many tiles were counted; -1 when the document has errors, -2 when something else fails
ENGINE_EXPORT int engine_count(Scene* scene, const char* text, std::size_t size) {
  return guarded(-2, [&] {
    const toolkit::CheckedDocument& document = checked({text, size});
    return document.configuration ? static_cast<int>(scene->count(document.configuration->detector)) : -1;
  });
}

ENGINE_EXPORT std::size_t engine_scene_tiles(const Scene* scene) {
  return scene->points().tiles().size();
}

// The numbers of the 24 slots, then the excluded and the no returns, then a bit for each slot that is
// reached; until the next call.
ENGINE_EXPORT const std::uint32_t* engine_scene_counts(const Scene* scene) {
  static std::array<std::uint32_t, 27> numbers{};
  const filter::classify::ZoneCounts& counts = scene->counts().counts();
  std::transform(counts.inside.begin(), counts.inside.end(), numbers.begin(),
                 [](std::uint64_t count) { return static_cast<std::uint32_t>(count); });
  numbers[24] = static_cast<std::uint32_t>(counts.excluded);
  numbers[25] = static_cast<std::uint32_t>(counts.noReturns);
  numbers[26] = scene->counts().reached();
  return numbers.data();
}

ENGINE_EXPORT const std::uint8_t* engine_scene_verdicts(const Scene* scene) {
  return scene->counts().verdicts().data();
}

// @param scene may be null
ENGINE_EXPORT int engine_plan(Scene* scene, const char* text, std::size_t size, const char* title,
                              std::size_t titleSize) {
  return guarded([&] {
    const toolkit::Configuration& configuration = configurationOf({text, size});
    const std::string name(title, titleSize);
    if (scene != nullptr) {
      answer() = scene->plan(configuration, name);
    } else {
      toolkit::PlanContent plan = toolkit::planOf(configuration);
      plan.title = name;
      answer() = toolkit::drawPlan(plan);
    }
  });
}
