#include <cstddef>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <filter/detection/CounterLines.h>
#include <settings/SettingsManager.h>

#include "support/FailingRun.h"
#include "support/LogCapture.h"
#include "support/Settings.h"

namespace orvantis::filter::detection {
namespace {

using orvantis::testing::loadText;
using orvantis::testing::LogCapture;
using orvantis::testing::Outcome;
using orvantis::testing::runFailing;
using orvantis::testing::saveText;

using Point = CounterLine::point;

// Names and numbers too long for a string's own buffer.
constexpr auto document = R"({"CounterLines": {"CounterLine": [
    {"name": "the line at the northern kerb", "first": {"x": 1.0000000000000002, "y": 2}, "second": {"x": 3, "y": 4}},
    {"name": "the line at the southern kerb", "first": {"x": 5, "y": 6}, "second": {"x": 7, "y": 8.000000000000002}},
    {"name": "the line at the northern kerb", "first": {"x": 9, "y": 9}, "second": {"x": 8, "y": 8}}]}})";

// The registry as the document that it saves.
std::string toText(const CounterLines& lines) {
  SettingsManager settings;
  lines.save(settings);
  return saveText(settings);
}

std::string expectedText() {
  SettingsManager settings;
  loadText(settings, document);
  CounterLines lines;
  lines.load(settings);
  return toText(lines);
}

class CounterLinesOutOfMemory : public ::testing::TestWithParam<LogLevel> {};

TEST_P(CounterLinesOutOfMemory, LoadThrowsNothingAndSaysSo) {
  const std::string expected = expectedText();
  std::size_t numErrors = 0;
  for (std::size_t n = 0;; ++n) {
    SettingsManager settings;
    loadText(settings, document);
    CounterLines lines;
    lines.insert({"old", Point(0, 0), Point(1, 0), nullptr, CounterLineDirectionType::LEFT});
    const LogCapture log(GetParam());
    const Outcome outcome = runFailing(n, [&] { lines.load(settings); });
    const std::vector<std::string> errors = log.texts(LogLevel::Error);
    if (outcome == Outcome::Done) {
      EXPECT_EQ(toText(lines), expected);
      EXPECT_GT(numErrors, 10U);
      break;
    }
    if (errors.empty()) {
      // The shortage was felt in a log record alone, or before the lines were touched.
      ASSERT_TRUE(toText(lines) == expected || outcome == Outcome::Failed) << "allocation " << n;
    } else {
      ++numErrors;
      ASSERT_EQ(outcome, Outcome::DoneWithoutMemory) << "allocation " << n;
      ASSERT_EQ(errors.size(), 1U);
      ASSERT_EQ(errors[0].find("Unable to load settings: "), 0U) << errors[0];
      ASSERT_LE(lines.size(), 2U);
      ASSERT_FALSE(lines.find("old"));
    }
    lines.load(settings);
    ASSERT_EQ(toText(lines), expected) << "allocation " << n;
  }
}

TEST_P(CounterLinesOutOfMemory, SaveThrowsAndTheRegistryIsUnchanged) {
  SettingsManager settings;
  loadText(settings, document);
  CounterLines lines;
  lines.load(settings);
  const std::string expected = toText(lines);
  const LogCapture log(GetParam());
  for (std::size_t n = 0;; ++n) {
    SettingsManager target;
    const Outcome outcome = runFailing(n, [&] { lines.save(target); });
    ASSERT_EQ(toText(lines), expected) << "allocation " << n;
    if (outcome == Outcome::Done) {
      EXPECT_GT(n, 20U);
      EXPECT_EQ(saveText(target), expected);
      break;
    }
    ASSERT_EQ(outcome, Outcome::Failed) << "allocation " << n;
    lines.save(target);
    ASSERT_EQ(saveText(target), expected) << "allocation " << n;
  }
}

TEST_P(CounterLinesOutOfMemory, InsertThrowsAndKeepsEveryLineWhole) {
  const CounterLine added("the line at the northern kerb", Point(1, 2), Point(3, 4), nullptr,
                          CounterLineDirectionType::LEFT);
  const CounterLine update("the line at the northern kerb", Point(5, 6), Point(7, 8), nullptr,
                           CounterLineDirectionType::LEFT);
  const LogCapture log(GetParam());
  for (std::size_t n = 0;; ++n) {
    CounterLines lines;
    const Outcome outcome = runFailing(n, [&] {
      lines.insert(added);
      lines.insert(update);
    });
    for (const auto& [name, line] : lines.clone()) {
      ASSERT_EQ(line.getName(), name) << "allocation " << n;
      ASSERT_EQ(line.getPoints().size(), 2U) << "allocation " << n;
    }
    if (outcome == Outcome::Done) {
      EXPECT_GT(n, 2U);
      break;
    }
    lines.insert(update);
    ASSERT_EQ(lines.clone().at(update.getName()).getPoints()[0].x(), 5.0) << "allocation " << n;
  }
}

TEST_P(CounterLinesOutOfMemory, CloneThrowsAndReleasesTheLock) {
  SettingsManager settings;
  loadText(settings, document);
  CounterLines lines;
  lines.load(settings);
  const LogCapture log(GetParam());
  for (std::size_t n = 0;; ++n) {
    const Outcome outcome = runFailing(n, [&] { lines.clone(); });
    ASSERT_EQ(lines.size(), 2U) << "allocation " << n;
    if (outcome == Outcome::Done) {
      EXPECT_GT(n, 4U);
      break;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(QuietAndTraced, CounterLinesOutOfMemory,
                         ::testing::Values(LogLevel::Warning, LogLevel::Trace));

TEST(CounterLineOutOfMemory, ReadingThrowsAndKeepsTwoPoints) {
  SettingsManager settings;
  loadText(settings, document);
  const auto& entry = settings.getTree().get_child("CounterLines.CounterLine");
  for (std::size_t n = 0;; ++n) {
    CounterLine line("old", Point(5, 6), Point(7, 8), nullptr, CounterLineDirectionType::LEFT);
    const Outcome outcome = runFailing(n, [&] { line.deserialize(entry); });
    ASSERT_EQ(line.getPoints().size(), 2U) << "allocation " << n;
    if (outcome == Outcome::Done) {
      EXPECT_EQ(line.getPoints()[0].x(), 1.0000000000000002);
      break;
    }
    ASSERT_EQ(outcome, Outcome::Failed) << "allocation " << n;
    ASSERT_EQ(line.getPoints()[0].x(), 5.0) << "allocation " << n;
    ASSERT_EQ(line.getPoints()[1].y(), 8.0) << "allocation " << n;
  }
}

}  // namespace
}  // namespace orvantis::filter::detection
