// A tree that is changed through the reference that `putChild` returned, unseen by the store.

#include <iterator>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include <boost/property_tree/ptree.hpp>
#include <gtest/gtest.h>

#include <settings/SettingsManager.h>

#include "support/Settings.h"

namespace orvantis {
namespace {

using boost::property_tree::ptree;
using testing::loadText;
using testing::saveText;

ptree listOf(const std::vector<std::string>& values) {
  ptree list;
  for (const std::string& value : values) {
    list.push_back({"a", ptree(value)});
  }
  return list;
}

using Values = std::vector<std::string>;

// The values of the current node's children named "a", by each way there is to them.
Values valuesOf(SettingsManager& settings) {
  Values values;
  for (int i = 0; i < settings.getChildCount("a"); ++i) {
    values.push_back(settings.getIndexedValue("a", i));
    settings.pathPush("a", i, nullptr);
    EXPECT_EQ(settings.get<std::string>(""), values.back());
    settings.pathPop();
  }
  EXPECT_THROW(settings.getIndexedValue("a", static_cast<int>(values.size())),
               boost::property_tree::ptree_error);
  EXPECT_EQ(settings.exists("a"), !values.empty());
  EXPECT_EQ(static_cast<bool>(settings.getChildOptional("a")), !values.empty());
  if (!values.empty()) {
    EXPECT_EQ(settings.getChildOptional("a")->data(), values.front());
  }
  return values;
}

class LentTree : public ::testing::Test {
 protected:
  LentTree() : list(settings.putChild("list", listOf({"0", "1", "2"}))) {
    settings.pathPush("list");
    EXPECT_EQ(valuesOf(settings), (Values{"0", "1", "2"}));  // so that there is something to remember
  }

  SettingsManager settings;
  ptree& list;
};

TEST_F(LentTree, IsCountedAndReadAfterEntriesWereAdded) {
  list.push_back({"a", ptree("3")});
  EXPECT_EQ(settings.getChildCount("a"), 4);
  EXPECT_EQ(settings.getIndexedValue("a", 3), "3");
  list.add("a", "4");
  list.add("b", "5");
  EXPECT_EQ(valuesOf(settings), (Values{"0", "1", "2", "3", "4"}));
}

TEST_F(LentTree, IsCountedAndReadAfterEntriesWereErased) {
  list.erase(std::next(list.begin()));
  EXPECT_EQ(valuesOf(settings), (Values{"0", "2"}));
  list.pop_front();
  EXPECT_EQ(settings.getIndexedValue("a", 0), "2");
  EXPECT_EQ(settings.getChildCount("a"), 1);
  EXPECT_THROW(settings.getIndexedValue("a", 1), boost::property_tree::ptree_error);
  EXPECT_THROW(settings.pathPush("a", 2, nullptr), std::out_of_range);
  list.erase("a");
  EXPECT_EQ(valuesOf(settings), Values());
  EXPECT_THROW(settings.pathPush("a", 1, nullptr), std::out_of_range);
  settings.pathPush("a", 0, nullptr);
  settings.put<int>("", 7);
  settings.pathPop();
  EXPECT_EQ(valuesOf(settings), Values{"7"});
}

TEST_F(LentTree, IsReadAfterOneEntryWasReplacedByAnother) {
  list.erase(list.begin());
  list.push_back({"a", ptree("3")});
  EXPECT_EQ(valuesOf(settings), (Values{"1", "2", "3"}));
  // Memory that was freed last is given out first: the last entry can have the address of the old last one.
  const ptree five("5");
  const ptree four("4");
  list.pop_back();
  list.erase(std::next(list.begin()));
  list.push_back({"a", four});
  list.push_back({"a", five});
  EXPECT_EQ(valuesOf(settings), (Values{"1", "4", "5"}));
  // One entry fewer and one child of another name more.
  list.erase(std::next(list.begin()));
  list.push_back({"b", five});
  EXPECT_EQ(valuesOf(settings), (Values{"1", "5"}));
}

TEST_F(LentTree, IsReadAfterItWasAssignedSwappedOrCleared) {
  list = listOf({"x", "y"});
  EXPECT_EQ(valuesOf(settings), (Values{"x", "y"}));
  ptree other = listOf({"p", "q", "r"});
  list.swap(other);
  EXPECT_EQ(valuesOf(settings), (Values{"p", "q", "r"}));
  list.clear();
  EXPECT_EQ(valuesOf(settings), Values());
}

TEST_F(LentTree, IsReadInDocumentOrderWhereverAnEntryWasPut) {
  list.push_front({"a", ptree("front")});
  EXPECT_EQ(valuesOf(settings), (Values{"front", "0", "1", "2"}));
  list.insert(std::next(list.begin(), 2), {"b", ptree("other")});
  list.insert(std::next(list.begin(), 3), {"a", ptree("middle")});
  EXPECT_EQ(valuesOf(settings), (Values{"front", "0", "middle", "1", "2"}));
  EXPECT_EQ(settings.pathPush("a"), "list.a");
  EXPECT_EQ(settings.get<std::string>(""), "front");
  settings.pathPop();
  list.reverse();
  EXPECT_EQ(valuesOf(settings), (Values{"2", "1", "middle", "0", "front"}));
  list.sort([](const ptree::value_type& a, const ptree::value_type& b) {
    return a.second.data() < b.second.data();
  });
  EXPECT_EQ(valuesOf(settings), (Values{"0", "1", "2", "front", "middle"}));
}

TEST_F(LentTree, IsWrittenInDocumentOrderAsItIsRead) {
  list.push_front({"a", ptree("front")});
  list.insert(std::next(list.begin()), {"b", ptree("other")});
  list.push_back({"b", ptree("last")});
  EXPECT_EQ(
      saveText(settings),
      "{\n  \"list\": {\n    \"a\": [\n      \"front\",\n      \"0\",\n      \"1\",\n      \"2\"\n    ],\n"
      "    \"b\": [\n      \"other\",\n      \"last\"\n    ]\n  }\n}\n");
  list.reverse();
  EXPECT_EQ(saveText(settings),
            "{\n  \"list\": {\n    \"b\": [\n      \"last\",\n      \"other\"\n    ],\n"
            "    \"a\": [\n      \"2\",\n      \"1\",\n      \"0\",\n      \"front\"\n    ]\n  }\n}\n");
}

TEST_F(LentTree, IsReadAtEveryDepth) {
  ptree inner = listOf({"x"});
  list.push_back({"inner", inner});
  settings.pathPush("inner");
  EXPECT_EQ(valuesOf(settings), Values{"x"});
  list.get_child("inner").push_back({"a", ptree("y")});
  EXPECT_EQ(valuesOf(settings), (Values{"x", "y"}));
  settings.pathPop();
  settings.pathPush("made", 0, nullptr);
  EXPECT_EQ(valuesOf(settings), Values());
  list.get_child("made") = listOf({"z"});
  EXPECT_EQ(valuesOf(settings), Values{"z"});
}

TEST_F(LentTree, IsStillLentWhenItIsStoredAnew) {
  settings.pathPop();
  settings.putChild("list", listOf({"n"}));
  settings.pathPush("list");
  EXPECT_EQ(valuesOf(settings), Values{"n"});
  list.push_back({"a", ptree("m")});
  EXPECT_EQ(valuesOf(settings), (Values{"n", "m"}));
  ptree& inside = settings.putChild("inside", listOf({"0"}));
  settings.pathPush("inside");
  EXPECT_EQ(valuesOf(settings), Values{"0"});
  inside.erase("a");
  EXPECT_EQ(valuesOf(settings), Values());
}

TEST_F(LentTree, KeepsOtherListsOfTheDocumentAsTheyAre) {
  settings.pathPop();
  settings.add("a", "beside");
  EXPECT_EQ(valuesOf(settings), Values{"beside"});
  list.push_back({"a", ptree("3")});
  EXPECT_EQ(valuesOf(settings), Values{"beside"});
}

// An erased node leaves its address to the next one, and what was known of its notation must not go with it.
TEST_F(LentTree, ANodeMadeAfterAnErasureIsWrittenAsWhatItIs) {
  for (int i = 0; i < 50; ++i) {
    settings.put<std::string>("quoted", "7");
    list.erase("quoted");
    settings.pathPush("empty" + std::to_string(i));
    settings.pathPop();
  }
  SettingsManager again;
  loadText(again, saveText(settings));
  for (int i = 0; i < 50; ++i) {
    ASSERT_NE(saveText(settings).find("\"empty" + std::to_string(i) + "\": {}"), std::string::npos) << i;
  }
}

// Changes of every kind, several between two looks, against a walk over the tree itself.
TEST(LentTrees, AnyChangesAreReadAsAWalkOverTheTreeReadsThem) {
  const std::vector<std::string> names = {"a", "b", "a.b"};
  std::mt19937_64 random(11);
  for (int run = 0; run < 60; ++run) {
    SettingsManager settings;
    settings.put<int>("before", 1);
    ptree& list = settings.putChild("list", listOf({"0", "1", "2"}));
    settings.pathPush("list");
    for (int step = 0; step < 200; ++step) {
      for (auto changes = random() % 5; changes != 0; --changes) {
        const std::string& name = names[random() % names.size()];
        const std::string value = std::to_string(step) + "." + std::to_string(changes);
        const auto place = [&] {
          return std::next(list.begin(), static_cast<std::ptrdiff_t>(random() % (list.size() + 1)));
        };
        switch (random() % 12) {
          case 0:
          case 1:
            list.push_back({name, ptree(value)});
            break;
          case 2:
            list.insert(place(), {name, ptree(value)});
            break;
          case 3:
          case 4:
            if (const auto child = place(); child != list.end()) {
              list.erase(child);
            }
            break;
          case 5:
            if (!list.empty()) {
              list.pop_back();
            }
            break;
          case 6:
            if (list.size() > 12) {
              list.erase(name);
            }
            break;
          case 7:
            list.reverse();
            break;
          case 8:
            settings.add(name, value);
            break;
          case 9:
            settings.pathPush(name, settings.getChildCount(name), nullptr);
            settings.put<std::string>("", value);
            settings.pathPop();
            break;
          case 10:
            settings.put<std::string>(name, value);
            break;
          default:
            list = ptree(list);
        }
      }
      const std::string& asked = names[random() % names.size()];
      Values expected;
      for (const auto& [name, child] : list) {
        if (name == asked) {
          expected.push_back(child.data());
        }
      }
      ASSERT_EQ(settings.getChildCount(asked), static_cast<int>(expected.size()));
      for (std::size_t i = 0; i < expected.size(); ++i) {
        ASSERT_EQ(settings.getIndexedValue(asked, static_cast<int>(i)), expected[i]);
      }
    }
  }
}

}  // namespace
}  // namespace orvantis
