#include "document/Configuration.h"

#include <filter/detection/CounterLines.h>
#include <settings/SettingsManager.h>

#include "document/LocatedJson.h"

namespace orvantis::toolkit {
namespace {

using Tree = SettingsManager::Tree;

// Fills a node as the settings store would from the text. It may recurse, because the depth of a document is
// limited.
void fill(Tree& tree, const LocatedNode& node) {
  tree.data() = node.text;
  for (const LocatedNode& child : node.children) {
    fill(tree.push_back({child.name, Tree()})->second, child);
  }
}

}  // namespace

Configuration load(const LocatedNode& document) {
  SettingsManager settings;
  for (const std::string name : {"ZoneDetector", "CounterLines"}) {
    if (const LocatedNode* node = document.find(name)) {
      Tree tree;
      fill(tree, *node);
      settings.putChild(name, tree);
    }
  }
  Configuration configuration;
  configuration.detector.load(settings);
  // Loading the detector leaves the path at the root, where the lines are.
  filter::detection::CounterLines lines;
  lines.load(settings);
  configuration.lines = lines.clone();
  for (const LocatedNode* zone : document.all("Zone3d")) {
    Tree tree;
    fill(tree, *zone);
    SettingsManager one;
    one.putChild("Zone3d", tree);
    configuration.sensorZones.push_back(std::make_shared<filter::detection::Zone3dTarsel>(one, 0));
  }
  return configuration;
}

}  // namespace orvantis::toolkit
