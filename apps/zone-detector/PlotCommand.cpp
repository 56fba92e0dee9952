#include "PlotCommand.h"

#include <cmath>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <vector>

#include <CLI/CLI.hpp>

#include "CloudReader.h"
#include "Command.h"
#include "Console.h"
#include "DocumentFile.h"
#include "drawing/SitePlan.h"
#include "files/AtomicFile.h"

namespace orvantis::app {
namespace {

using filter::detection::Point;

// A dot for each finite point; those that count in a zone are told by their masks.
void addCloud(const std::string& path, const filter::detection::ZoneDetector& detector, PlanContent& plan) {
  constexpr std::uint64_t fieldZones = (std::uint64_t{1} << 24U) - 1;
  const Cloud cloud = readCloud(path);
  std::vector<std::uint64_t> masks(cloud.size());
  const filter::classify::PointClassifier classifier(detector);
  std::visit([&](const auto& view) { classifier.classify(view, masks.data()); }, viewOf(cloud));
  for (std::size_t i = 0; i < cloud.size(); ++i) {
    const auto& [x, y, z] = cloud[i];
    if (std::isfinite(x) && std::isfinite(y) && std::isfinite(z)) {
      const bool isCounted = masks[i] <= fieldZones && masks[i] != 0;
      plan.dots.push_back({Point(x, y), isCounted});
    }
  }
}

}  // namespace

int plot(const PlotOptions& options, const Console& console) {
  const Configuration configuration = readConfiguration(options.document, console);
  PlanContent plan = planOf(configuration);
  plan.title = std::filesystem::path(options.document).filename().string();
  if (!options.cloud.empty()) {
    addCloud(options.cloud, configuration.detector, plan);
    plan.title += " over " + std::filesystem::path(options.cloud).filename().string();
  }
  std::string svg;
  try {
    svg = drawPlan(plan);
  } catch (const std::exception& error) {
    throw Failure(options.document, error.what());
  }
  if (options.output.empty()) {
    console.out << svg;
    console.flush();
  } else {
    writeWhole(options.output, svg);
  }
  return 0;
}

void addPlotCommand(CLI::App& program, Task& task) {
  const auto options = std::make_shared<PlotOptions>();
  CLI::App& command = addCommand(program, {"plot", "draw the plan as SVG", R"(Examples:
  zone-detector plot site.json -o plan.svg
  zone-detector plot site.json scan.pcd -o plan.svg

Draws zones, exclusion zones and counter lines to scale, over a scan if one is given.)"});
  command.add_option("FILE", options->document, "zone document")->required();
  command.add_option("CLOUD", options->cloud, "scan to draw under the zones");
  command.add_option("-o,--output", options->output, "picture to write; else the standard output");
  command.final_callback(
      [options, &task] { task = [options](const Console& console) { return plot(*options, console); }; });
}

}  // namespace orvantis::app
