#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <filter/detection/Rectangle.h>
#include <settings/SettingsManager.h>

#include "support/GroupingLocale.h"
#include "support/LogCapture.h"
#include "support/Settings.h"
#include "zones/Shapes.h"

namespace orvantis::filter::detection {
namespace {

using testing::Coordinates;
using testing::GroupingLocale;
using testing::LogCapture;
using testing::points;

TEST(ShapeLocale, MessagesGroupNoDigits) {
  const GroupingLocale foreign;
  const LogCapture log;
  const Rectangle rectangle("r", points(Coordinates(1234567, {0, 0})), 0.0);
  EXPECT_EQ(log.texts(LogLevel::Error),
            (std::vector<std::string>{"Invalid rectangle inputs of corners size 1234567"}));
}

TEST(ShapeLocale, NumbersAreWrittenAndReadInTheClassicLocale) {
  const GroupingLocale foreign;
  const Rectangle rectangle("r", points({{1234.5, -0.25}, {98765432.125, 7}}), 12.75);
  SettingsManager settings;
  rectangle.save(settings);
  const std::string text = testing::saveText(settings);
  EXPECT_NE(text.find("98765432.125"), std::string::npos) << text;
  SettingsManager reread;
  testing::loadText(reread, text);
  EXPECT_EQ(testing::verticesOf(Rectangle("loaded", reread)), testing::verticesOf(rectangle));
}

}  // namespace
}  // namespace orvantis::filter::detection
