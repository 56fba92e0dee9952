#include <atomic>
#include <functional>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <filter/detection/CounterLines.h>
#include <settings/SettingsManager.h>

#include "support/LogCapture.h"
#include "support/Settings.h"

namespace orvantis::filter::detection {
namespace {

using orvantis::testing::loadText;
using orvantis::testing::LogCapture;

using Point = CounterLine::point;

// A line whose four coordinates are one number, so that a half-written one shows.
CounterLine marked(const std::string& name, double mark) {
  return {name, Point(mark, mark), Point(mark, mark), nullptr, CounterLineDirectionType::LEFT};
}

bool isWhole(const std::string& key, const CounterLine& line) {
  const auto& points = line.getPoints();
  return line.getName() == key && points.size() == 2 && points[0].x() == points[0].y() &&
         points[0].x() == points[1].x() && points[1].x() == points[1].y();
}

void storeMarked(SettingsManager& settings, const std::vector<std::string>& names, double mark) {
  CounterLines lines;
  for (const std::string& name : names) {
    lines.insert(marked(name, mark));
  }
  lines.save(settings);
}

void runAtOnce(const std::vector<std::function<void()>>& jobs) {
  std::vector<std::thread> threads;
  threads.reserve(jobs.size());
  for (const auto& job : jobs) {
    threads.emplace_back(job);
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
}

std::vector<std::function<void()>> everyOperation(CounterLines& lines, std::atomic<int>& numTorn) {
  constexpr int rounds = 300;
  const auto nameOf = [](int round) { return "line " + std::to_string(round % 5); };
  return {[&lines, nameOf] {
            for (int round = 0; round < rounds; ++round) {
              lines.insert(marked(nameOf(round), round));
            }
          },
          [&lines, nameOf] {
            for (int round = 0; round < rounds; ++round) {
              lines.insert(marked(nameOf(3 * round), -round));
            }
          },
          [&lines, nameOf] {
            for (int round = 0; round < rounds; ++round) {
              lines.erase(nameOf(2 * round));
            }
          },
          [&lines, nameOf] {
            for (int round = 0; round < rounds; ++round) {
              lines.find(nameOf(round));
            }
          },
          [&lines, &numTorn] {
            for (int round = 0; round < rounds; ++round) {
              for (const auto& [name, line] : lines.clone()) {
                numTorn += isWhole(name, line) ? 0 : 1;
                line.direction(Point(0.0, 0.0));
              }
            }
          },
          [&lines, &numTorn] {
            for (int round = 0; round < rounds; ++round) {
              numTorn += lines.size() <= 7 ? 0 : 1;  // five names, and two that are loaded
            }
          },
          [&lines, &numTorn] {
            for (int round = 0; round < rounds; ++round) {
              SettingsManager settings;
              lines.save(settings);
              CounterLines copy;
              copy.load(settings);
              for (const auto& [name, line] : copy.clone()) {
                numTorn += isWhole(name, line) ? 0 : 1;
              }
            }
          },
          [&lines] {
            SettingsManager settings;
            storeMarked(settings, {"loaded 1", "loaded 2"}, 0.5);
            for (int round = 0; round < rounds; ++round) {
              lines.load(settings);
            }
          },
          [&lines] {
            SettingsManager settings;
            loadText(settings, R"({"CounterLines": {"CounterLine": [{"name": "no points"}]}})");
            for (int round = 0; round < rounds; ++round) {
              lines.load(settings);
            }
          }};
}

TEST(RegistryThreads, EveryOperationMayRunAtOnce) {
  CounterLines lines;
  std::atomic<int> numTorn = 0;
  // The one error is the document that is refused, in each round.
  const LogCapture log(LogLevel::Error);
  runAtOnce(everyOperation(lines, numTorn));
  EXPECT_EQ(numTorn, 0);
  EXPECT_EQ(log.records().size(), 300U);
  for (const auto& [name, line] : lines.clone()) {
    EXPECT_TRUE(isWhole(name, line)) << name;
  }
}

TEST(RegistryThreads, EveryOperationMayRunAtOnceWhileItIsTraced) {
  CounterLines lines;
  std::atomic<int> numTorn = 0;
  const LogCapture log(LogLevel::Trace);
  runAtOnce(everyOperation(lines, numTorn));
  EXPECT_EQ(numTorn, 0);
  EXPECT_FALSE(log.records().empty());
}

TEST(RegistryThreads, ALoadIsSeenWholeOrNotAtAll) {
  const std::vector<std::string> names = {"A", "B", "C", "D", "E", "F", "G", "H"};
  CounterLines lines;
  for (const std::string& name : names) {
    lines.insert(marked(name, 1.0));
  }
  std::atomic<int> numPartial = 0;
  std::atomic<bool> isOver = false;
  const auto loadMarked = [&](double mark) {
    return [&, mark] {
      SettingsManager settings;
      storeMarked(settings, names, mark);
      for (int round = 0; round < 500; ++round) {
        lines.load(settings);
      }
      isOver = true;
    };
  };
  const auto watch = [&] {
    while (!isOver) {
      const std::map<std::string, CounterLine> copy = lines.clone();
      bool isAsOneLoadLeftIt = copy.size() == names.size();
      for (const auto& [name, line] : copy) {
        isAsOneLoadLeftIt =
            isAsOneLoadLeftIt && line.getPoints()[0].x() == copy.begin()->second.getPoints()[0].x();
      }
      numPartial += isAsOneLoadLeftIt && lines.size() == names.size() ? 0 : 1;
    }
  };
  runAtOnce({loadMarked(1.0), loadMarked(2.0), watch, watch});
  EXPECT_EQ(numPartial, 0);
}

}  // namespace
}  // namespace orvantis::filter::detection
