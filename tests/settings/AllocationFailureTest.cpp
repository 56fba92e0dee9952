#include <cstddef>
#include <functional>
#include <new>
#include <ostream>
#include <sstream>
#include <string>

#include <boost/property_tree/ptree.hpp>
#include <gtest/gtest.h>

#include <settings/SettingsManager.h>
#include <settings/SettingsPathManager.h>

#include "support/AllocationCounter.h"
#include "support/FailingRun.h"
#include "support/Settings.h"

namespace orvantis {
namespace {

using boost::property_tree::ptree;
using testing::FailingAllocation;
using testing::loadText;
using testing::Outcome;
using testing::runFailing;
using testing::saveText;

// Runs the action on a fresh store once for each of its allocations, which then fails. The store must stay
// usable. Leaks are AddressSanitizer's to find.
void failEachAllocation(const std::function<void(SettingsManager&)>& prepare,
                        const std::function<void(SettingsManager&)>& action,
                        const std::function<void(SettingsManager&)>& check) {
  for (std::size_t n = 0;; ++n) {
    SettingsManager settings;
    prepare(settings);
    bool threw = false;
    bool failed = false;
    {
      const FailingAllocation failing(n);
      try {
        action(settings);
      } catch (const std::bad_alloc&) {
        threw = true;
      }
      failed = failing.happened();
    }
    if (!failed) {
      EXPECT_FALSE(threw);
      EXPECT_GT(n, 0U) << "the action allocates nothing";
      return;
    }
    EXPECT_TRUE(threw) << "allocation " << n << " failed unnoticed";
    check(settings);
    loadText(settings, R"({"again": [1, {"x": "7"}]})");
    EXPECT_EQ(saveText(settings), "{\n  \"again\": [\n    1,\n    {\n      \"x\": \"7\"\n    }\n  ]\n}\n")
        << "after allocation " << n;
  }
}

const std::string document =
    R"({"D": {"name": "a name that is too long for a small string", "index": 7, "text": "7", "flag": true,
       "Zone": [{"Point": [{"x": 1.5, "y": 2}, {"x": 3, "y": 4}]}], "rows": [[1], []], "one": ["x"], "empty": ""}})";

void prepareDocument(SettingsManager& settings) {
  loadText(settings, R"({"kept": {"x": 1, "list": ["a", "b"]}})");
  settings.pathPush("kept");
}

void expectKept(SettingsManager& settings) {
  EXPECT_EQ(settings.get<int>("x"), 1);
  EXPECT_EQ(settings.getChildCount("list"), 2);
  EXPECT_EQ(settings.getTree().size(), 1U);
}

TEST(AllocationFailure, OfAReadKeepsTheDocumentAndThePath) {
  std::istringstream in;
  failEachAllocation(
      [&in](SettingsManager& settings) {
        prepareDocument(settings);
        in.str(document);
        in.clear();
      },
      [&in](SettingsManager& settings) { EXPECT_TRUE(settings.loadStream(in, SettingsManager::JSON)); },
      expectKept);
}

TEST(AllocationFailure, OfARefusedReadKeepsTheDocumentAndThePath) {
  std::istringstream in;
  failEachAllocation(
      [&in](SettingsManager& settings) {
        prepareDocument(settings);
        in.str(document + "}");
        in.clear();
      },
      [&in](SettingsManager& settings) { EXPECT_FALSE(settings.loadStream(in, SettingsManager::JSON)); },
      expectKept);
}

TEST(AllocationFailure, OfAWriteLeavesTheStreamUntouched) {
  std::ostringstream out;
  failEachAllocation(
      [&out](SettingsManager& settings) {
        loadText(settings, document);
        // Room for the text beforehand: a failure inside the stream is the stream's to report.
        out.str(std::string(10000, ' '));
        out.seekp(0);
      },
      [&out](SettingsManager& settings) { EXPECT_TRUE(settings.saveStream(out, SettingsManager::JSON)); },
      [&out](SettingsManager& settings) {
        EXPECT_EQ(out.str(), std::string(10000, ' '));
        EXPECT_EQ(settings.get<int>("D.index"), 7);
        out.clear();
      });
}

// What is counted and what is reached by number must stay one.
void expectConsistent(SettingsManager& settings) {
  for (const char* name : {"new", "list", "a"}) {  // first the one whose count may be remembered
    const int count = settings.getChildCount(name);
    SettingsManager::Tree tree = settings.getTree().front().second;
    EXPECT_EQ(static_cast<std::size_t>(count), tree.count(name)) << name;
    for (int i = 0; i < count; ++i) {
      EXPECT_NO_THROW(settings.pathPush(name, i, nullptr));
      settings.pathPop();
    }
  }
  EXPECT_EQ(settings.get<int>("x"), 1);
}

TEST(AllocationFailure, OfAPutOrAddLeavesAConsistentStore) {
  const std::string longText = "7" + std::string(100, '0');
  const std::string longKey(100, 'k');
  const auto run = [](const std::function<void(SettingsManager&)>& action) {
    failEachAllocation(prepareDocument, action, expectConsistent);
  };
  run([&](SettingsManager& settings) { settings.put<std::string>("new", longText); });
  run([&](SettingsManager& settings) { settings.put<std::string>("x." + longKey + ".b", longText); });
  run([&](SettingsManager& settings) { settings.put<double>("new", 1.0 / 3.0); });
  run([&](SettingsManager& settings) { settings.put<int>("new", 5); });
  run([&](SettingsManager& settings) { settings.put<bool>("new", true); });
  run([&](SettingsManager& settings) { settings.add("list", longText); });
  run([&](SettingsManager& settings) {
    settings.getChildCount("new");
    settings.put<std::string>("new.b", longText);
  });
  run([&](SettingsManager& settings) {
    settings.getChildCount("list");
    settings.add("list", "7");
  });
}

TEST(AllocationFailure, OfAPushLeavesThePathAsItWas) {
  const auto expectSamePath = [](SettingsManager& settings) {
    expectConsistent(settings);
    const std::string text = settings.pathPush("list", 0, nullptr);
    EXPECT_EQ(text, "kept.list");
    settings.pathPop();
  };
  const std::string longName(100, 'n');
  failEachAllocation(
      prepareDocument, [&](SettingsManager& settings) { settings.pathPush(longName); }, expectSamePath);
  failEachAllocation(
      prepareDocument, [&](SettingsManager& settings) { settings.pathPush(longName, 0, nullptr); },
      expectSamePath);
  failEachAllocation(
      prepareDocument,
      [](SettingsManager& settings) {
        settings.getChildCount("list");
        settings.pathPush("list", 2, nullptr);
      },
      expectConsistent);
  failEachAllocation(
      prepareDocument,
      [&](SettingsManager& settings) { const utils::SettingsPathManager guard(settings, longName, 0); },
      expectSamePath);
}

TEST(AllocationFailure, OfASubtreeLeavesAConsistentStore) {
  ptree subtree;
  subtree.put("a.b", "7");
  subtree.put("c", std::string(100, 'c'));
  for (const char* name : {"list", "new"}) {
    failEachAllocation(
        prepareDocument, [&](SettingsManager& settings) { settings.putChild(name, subtree); },
        expectConsistent);
  }
}

// Each leaf is remembered as text that must be written quoted; there are more than the store has room for.
TEST(AllocationFailure, OfASubtreeThatReplacesAnotherLeavesTheOther) {
  ptree subtree;
  for (int i = 0; i < 100; ++i) {
    subtree.put("leaf" + std::to_string(i), "7");
  }
  SettingsManager untouched;
  prepareDocument(untouched);
  const std::string before = saveText(untouched);
  failEachAllocation(
      prepareDocument, [&](SettingsManager& settings) { settings.putChild("x", subtree); },
      [&](SettingsManager& settings) { EXPECT_EQ(saveText(settings), before); });
}

// The sign makes it a text for a stream, and a stream keeps to itself what is thrown while it reads.
TEST(AllocationFailure, OfAGetIsNotTakenForATextThatIsNotANumber) {
  SettingsManager settings;
  loadText(settings, R"({"x": "+1.5"})");
  for (std::size_t n = 0;; ++n) {
    double value = 1.5;
    const Outcome outcome = runFailing(n, [&] { value = settings.get<double>("x", 7.0); });
    EXPECT_EQ(value, 1.5) << "allocation " << n;
    if (outcome == Outcome::Done) {
      return;
    }
  }
}

}  // namespace
}  // namespace orvantis
