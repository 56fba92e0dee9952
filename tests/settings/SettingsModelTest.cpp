#include <random>
#include <string>
#include <utility>
#include <vector>

#include <boost/property_tree/ptree.hpp>
#include <gtest/gtest.h>

#include <settings/SettingsManager.h>

namespace orvantis {
namespace {

using boost::property_tree::ptree;

// A node as plain as can be: a name, a text and a list of nodes, searched from the front.
struct Node {
  std::string name;
  std::string text;
  std::vector<Node> children;

  std::vector<Node*> named(const std::string& wanted) {
    std::vector<Node*> found;
    for (Node& child : children) {
      if (child.name == wanted) {
        found.push_back(&child);
      }
    }
    return found;
  }
  Node& first(const std::string& wanted) {
    const auto found = named(wanted);
    return found.empty() ? append(wanted) : *found.front();
  }
  Node& append(const std::string& added) { return children.emplace_back(Node{added, {}, {}}); }
};

ptree toTree(const Node& node) {
  ptree tree(node.text);
  for (const Node& child : node.children) {
    tree.push_back({child.name, toTree(child)});
  }
  return tree;
}

// Node addresses change as lists grow, so the model's path is a list of positions.
struct Model {
  Node root;
  std::vector<std::pair<std::string, std::size_t>> path;

  Node& current() {
    Node* node = &root;
    for (const auto& [name, index] : path) {
      node = node->named(name).at(index);
    }
    return *node;
  }
  std::string pathText() const {
    std::string text;
    for (std::size_t i = 0; i < path.size(); ++i) {
      text += (i == 0 ? "" : ".") + path[i].first;
    }
    return text;
  }
};

// Remembered lists of children must never be out of date, whatever was done in between.
TEST(SettingsModel, AnyOrderOfOperationsGivesWhatAPlainListGives) {
  const std::vector<std::string> names = {"a", "b", "Zone", ""};
  std::mt19937_64 random(7);
  for (int run = 0; run < 20; ++run) {
    SettingsManager settings;
    Model model;
    std::string done;
    for (int step = 0; step < 150; ++step) {
      const std::string& name = names[random() % names.size()];
      const std::string& key = names[random() % 3];  // a dotted path has no empty names
      const std::string value = std::to_string(step);
      const auto children = model.current().named(name);
      const int count = static_cast<int>(children.size());
      switch (random() % 9) {
        case 0:
          done += "push " + name + "\n";
          model.current().first(name);
          model.path.emplace_back(name, 0);
          ASSERT_EQ(settings.pathPush(name), model.pathText()) << done;
          break;
        case 1: {
          const auto index = random() % (children.size() + 1);
          done += "push " + name + " " + std::to_string(index) + "\n";
          if (index == children.size()) {
            model.current().append(name);
          }
          model.path.emplace_back(name, index);
          ASSERT_EQ(settings.pathPush(name, static_cast<int>(index), nullptr), model.pathText()) << done;
          break;
        }
        case 2:
        case 3:
          done += "pop\n";
          if (!model.path.empty()) {
            model.path.pop_back();
          }
          ASSERT_EQ(settings.pathPop(), model.pathText()) << done;
          break;
        case 4:
          done += "put " + key + "\n";
          model.current().first(key).text = value;
          settings.put<std::string>(key, value);
          break;
        case 5:
          done += "add " + key + "\n";
          model.current().append(key).text = value;
          settings.add(key, value);
          break;
        case 6:
          done += "put " + key + ".b\n";
          model.current().first(key).first("b").text = value;
          settings.put<int>(key + ".b", step);
          break;
        case 7: {
          done += "putChild " + name + "\n";
          Node subtree{name, {}, {}};
          subtree.append("a").text = value;
          model.current().first(name) = subtree;
          settings.putChild(name, toTree(subtree));
          break;
        }
        default:
          done += "index " + name + "\n";
          for (int index = 0; index < count; ++index) {
            ASSERT_EQ(settings.getIndexedValue(name, index), children[static_cast<std::size_t>(index)]->text)
                << done;
          }
          ASSERT_THROW(settings.getIndexedValue(name, count), boost::property_tree::ptree_error) << done;
      }
      const std::string& asked = names[random() % names.size()];
      ASSERT_EQ(settings.getChildCount(asked), static_cast<int>(model.current().named(asked).size())) << done;
      ASSERT_EQ(settings.exists(asked), !model.current().named(asked).empty()) << done;
      ASSERT_TRUE(settings.getTree() == toTree(model.root)) << done;
    }
  }
}

}  // namespace
}  // namespace orvantis
