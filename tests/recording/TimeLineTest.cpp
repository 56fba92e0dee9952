#include <chrono>
#include <deque>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "files/Failure.h"
#include "recording/FrameWarnings.h"
#include "recording/TimeLine.h"

namespace orvantis::toolkit {
namespace {

using filter::monitor::Stamp;
using namespace std::chrono_literals;

/// Frames with the stamps that are given, or without one.
class GivenFrames final : public FrameSource {
 public:
  explicit GivenFrames(std::deque<std::optional<Stamp>> stamps) : stamps_(std::move(stamps)) {}

  std::optional<InputFrame> next() override {
    if (stamps_.empty()) {
      return std::nullopt;
    }
    InputFrame frame;
    frame.file = "frame_" + std::to_string(number_++);
    frame.stamp = stamps_.front();
    stamps_.pop_front();
    frame.points = filter::classify::PointsView<float>::separate(&zero_, &zero_, &zero_, 1);
    return frame;
  }
  std::uint64_t bytes() const override { return 0; }
  std::optional<std::size_t> frameCount() const override { return stamps_.size(); }
  std::vector<std::string> warnings() const override { return {"cut off"}; }
  bool isDamaged() const override { return false; }

 private:
  std::deque<std::optional<Stamp>> stamps_;
  std::size_t number_ = 0;
  float zero_ = 0.0F;
};

TimeLine lineOf(std::deque<std::optional<Stamp>> stamps, const std::string& tracks = "",
                std::optional<double> rate = std::nullopt) {
  std::unique_ptr<TrackReader> reader;
  if (!tracks.empty()) {
    reader = std::make_unique<TrackReader>(
        std::make_unique<std::istringstream>("stamp,id,class,x,y,length,width,heading,zmin,zmax\n" + tracks),
        "tracks.csv", TracksFormat::Csv);
  }
  return {std::make_unique<GivenFrames>(std::move(stamps)), FrameClock(rate), std::move(reader)};
}

// "1.5 frame_0 2": the stamp, the frame and the number of objects of each moment.
std::vector<std::string> told(TimeLine& timeLine) {
  std::vector<std::string> moments;
  while (const auto moment = timeLine.next()) {
    std::string text = std::to_string(moment->stamp / 1ms);
    text += moment->frame ? " " + moment->frame->file : std::string();
    text += moment->objects ? " " + std::to_string(moment->objects->size()) : std::string();
    moments.push_back(text);
  }
  return moments;
}

std::string refusalOf(TimeLine timeLine) {
  try {
    told(timeLine);
  } catch (const Failure& failure) {
    return failure.what();
  }
  return "";
}

TEST(TimeLine, JoinsFramesAndTracksByTheirStamps) {
  TimeLine timeLine = lineOf({1s, 2s, 3s},
                             "0.5,1,,0,0,1,1,0,0,1\n"
                             "2,1,,0,0,1,1,0,0,1\n"
                             "2,2,,0,0,1,1,0,0,1\n"
                             "4,1,,0,0,1,1,0,0,1\n");
  EXPECT_EQ(timeLine.cloudCount(), 3U);
  EXPECT_EQ(told(timeLine),
            (std::vector<std::string>{"500 1", "1000 frame_0", "2000 frame_1 2", "3000 frame_2", "4000 1"}));
  EXPECT_FALSE(timeLine.next()) << "it stays at its end";
}

TEST(TimeLine, GivesSingleFramesStampsOfTheirNumber) {
  TimeLine tenHertz = lineOf({std::nullopt, std::nullopt, std::nullopt});
  EXPECT_EQ(told(tenHertz), (std::vector<std::string>{"0 frame_0", "100 frame_1", "200 frame_2"}));
  TimeLine fourHertz = lineOf({std::nullopt, std::nullopt}, "", 4.0);
  EXPECT_EQ(told(fourHertz), (std::vector<std::string>{"0 frame_0", "250 frame_1"}));
}

TEST(TimeLine, LeavesOutFramesThatAreNotLaterAndSaysHowMany) {
  TimeLine timeLine = lineOf({2s, 2s, 1s, 3s});
  EXPECT_EQ(told(timeLine), (std::vector<std::string>{"2000 frame_0", "3000 frame_3"}));
  EXPECT_EQ(timeLine.numLate(), 2U);
  EXPECT_EQ(FrameWarnings().texts(timeLine),
            (std::vector<std::string>{"cut off", "2 frames left out: not later than the frame before"}));
}

TEST(TimeLine, RefusesFramesWhoseStampsCannotBeTold) {
  EXPECT_EQ(refusalOf(lineOf({std::nullopt, 1s})),
            "frame_1: is a recording; the files before it are single frames, without stamps");
  EXPECT_EQ(refusalOf(lineOf({1s, std::nullopt})),
            "frame_1: is a single frame, without a stamp; the files before it are recordings");
  EXPECT_EQ(refusalOf(lineOf({1s}, "", 5.0)),
            "frame_0: is a recording, whose frames have stamps; --rate is for single frames");
  EXPECT_EQ(refusalOf(lineOf({std::nullopt, std::nullopt}, "", 1e-10)),
            "at 1e-10 Hz, frame_1 is out of the range of stamps");
}

TEST(FrameWarnings, TellOfFramesWithManyPointsAtTheOrigin) {
  const std::vector<float> zeros(200, 0.0F);
  InputFrame frame;
  frame.file = "first.pcd";
  frame.points = filter::classify::PointsView<float>::separate(zeros.data(), zeros.data(), zeros.data(), 200);
  FrameWarnings warnings;
  warnings.add(frame, 2);  // 1 %
  EXPECT_EQ(warnings.texts(GivenFrames({})), std::vector<std::string>{"cut off"});
  warnings.add(frame, 3);
  frame.file = "second.pcd";
  warnings.add(frame);
  const std::vector<std::string> texts = warnings.texts(GivenFrames({}));
  ASSERT_EQ(texts.size(), 2U);
  EXPECT_EQ(texts[0],
            "in 2 frames, first in first.pcd, more than 1 % of the points are at (0, 0, 0), as many drivers "
            "write \"no return\"; --drop-origin leaves them out");
}

TEST(FrameSource, AStampOfAListIsForFramesWithoutOne) {
  InputFrame frame;
  frame.file = "a.mcap";
  giveStamp(frame, 5s);
  EXPECT_EQ(frame.stamp, Stamp(5s));
  try {
    giveStamp(frame, 6s);
    ADD_FAILURE();
  } catch (const Failure& failure) {
    EXPECT_STREQ(failure.what(),
                 "a.mcap: is a recording, whose frames have stamps of their own; a list is of single frames");
  }
}

}  // namespace
}  // namespace orvantis::toolkit
