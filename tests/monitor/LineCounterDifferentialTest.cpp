#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <map>
#include <numbers>
#include <optional>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include <filter/monitor/LineCounter.h>

#include "Frames.h"
#include "PlainLineCounter.h"

// The quick counter and the plain one have to agree in every bit: on crowds that are seen now and then, in
// any order, on and beside many lines, near the origin and far from it, on lattices where everything touches.
namespace orvantis::filter::monitor::testing {
namespace {

using Side = detection::CounterLineDirectionType;

auto fieldsOf(const Crossing& crossing) {
  return std::tuple(crossing.line, crossing.from, crossing.to, crossing.id, crossing.className, crossing.met,
                    crossing.where.x(), crossing.where.y(), crossing.accepted);
}

// Where numbers lie: anywhere, on whole numbers, or beside them by a hair.
enum class Grain { Any, Whole, Almost };

class Crowd {
 public:
  Crowd(std::uint64_t seed, double offset, Grain grain)
      : random_(seed), offset_(offset), grain_(grain), places_(numTracks) {
    for (PlanarPoint& place : places_) {
      place = somewhere();
    }
  }

  std::int64_t whole(std::int64_t low, std::int64_t high) {
    return std::uniform_int_distribution<std::int64_t>(low, high)(random_);
  }

  std::map<std::string, detection::CounterLine> lines(int count) {
    std::map<std::string, detection::CounterLine> lines;
    for (int i = 0; i < count; ++i) {
      const std::string name = "L" + std::to_string(i);
      const PlanarPoint first = somewhere();
      const PlanarPoint second = whole(0, 9) == 0 ? first : somewhere();  // some without length
      lines.emplace(name, detection::CounterLine(name, first, second, nullptr, Side::LEFT));
    }
    return lines;
  }

  LineCounterOptions options() {
    LineCounterOptions options;
    options.forgetAfter = std::chrono::seconds(whole(2, 6));
    options.clearance = whole(0, 2) == 0 ? 0.5 * static_cast<double>(whole(1, 3)) : 0.0;
    if (whole(0, 2) == 0) {
      options.maxSpeed = static_cast<double>(whole(2, 8));
    }
    return options;
  }

  // Most tracks move a little, some jump, some are not seen, in any order.
  std::vector<TrackedObject> frame() {
    std::vector<TrackedObject> objects;
    for (std::int32_t id = 0; id < numTracks; ++id) {
      PlanarPoint& place = places_[static_cast<std::size_t>(id)];
      const double step = whole(0, 9) == 0 ? 12.0 : 3.0;
      place =
          whole(0, 19) == 0 ? somewhere() : PlanarPoint(place.x() + number(step), place.y() + number(step));
      if (whole(0, 3) != 0) {
        objects.push_back({id, footprintAt(place), 0.0, 1.0, whole(0, 1) == 0 ? "car" : "person"});
      }
    }
    if (whole(0, 1) == 0) {
      std::shuffle(objects.begin(), objects.end(), random_);
    }
    return objects;
  }

  static constexpr std::int32_t numTracks = 12;

 private:
  double number(double size) {
    const double any = std::uniform_real_distribution<double>(-size, size)(random_);
    const double hair = grain_ == Grain::Almost ? std::pow(10.0, static_cast<double>(whole(-17, -7))) *
                                                      static_cast<double>(whole(-1, 1))
                                                : 0.0;
    return grain_ == Grain::Any ? any : std::round(any) + hair;
  }
  PlanarPoint somewhere() { return {offset_ + number(10.0), number(10.0) - offset_}; }

  core::State footprintAt(const PlanarPoint& place) {
    const double length = std::abs(number(3.0));
    const double width = std::abs(number(2.0));
    switch (whole(0, 3)) {
      case 0: {
        // A triangle about somewhere else than its middle.
        return core::State(ring({{place.x() - length, place.y()},
                                 {place.x() + 1.0, place.y() + width},
                                 {place.x(), place.y() - 1.0}}));
      }
      case 1:
        return core::State(place.x(), place.y(), 0.0, 0.0, 0.0);
      case 2:
        return core::State(place.x(), place.y(), -2.0 * length, 2.0 * width,
                           grain_ == Grain::Any ? number(3.0) : 0.0);
      default:
        return core::State(place.x(), place.y(), 2.0 * length, 2.0 * width,
                           std::numbers::pi / 2.0 * number(2.0));
    }
  }

  std::mt19937_64 random_;
  double offset_;
  Grain grain_;
  std::vector<PlanarPoint> places_;
};

// Feeds both counters the same frames; returns the number of crossings and of verdicts of each kind.
struct Told {
  std::size_t crossings = 0;
  std::map<CrossingVerdict, std::size_t> verdicts;
};

void compare(Crowd& crowd, int numLines, Told& told) {
  const auto lines = crowd.lines(numLines);
  const LineCounterOptions options = crowd.options();
  LineCounter quick(lines, options);
  PlainLineCounter plain(lines, options);
  Stamp stamp{0};
  for (int frame = 0; frame < 40; ++frame) {
    stamp += std::chrono::seconds(crowd.whole(1, 3));
    if (crowd.whole(0, 1) == 0) {
      quick.advance(stamp - Duration(crowd.whole(0, 1)));
    }
    const auto objects = crowd.frame();
    const auto expected = plain.update(stamp, objects);
    const auto crossings = quick.update(stamp, objects);
    told.crossings += crossings.size();
    ASSERT_EQ(crossings.size(), expected.size());
    for (std::size_t i = 0; i < crossings.size(); ++i) {
      ASSERT_EQ(fieldsOf(crossings[i]), fieldsOf(expected[i]));
    }
    for (const auto& [name, line] : lines) {
      if (quick.explain(name, 0).verdict == CrossingVerdict::NoLength) {
        continue;
      }
      for (std::int32_t id = 0; id < Crowd::numTracks; ++id) {
        const auto got = quick.explain(name, id);
        const auto wanted = plain.explain(name, id);
        ++told.verdicts[got.verdict];
        ASSERT_EQ(got.verdict, wanted.verdict) << name << " " << id;
        ASSERT_EQ(got.side, wanted.side) << name << " " << id;
        ASSERT_EQ(got.lastCrossing.has_value(), wanted.lastCrossing.has_value()) << name << " " << id;
        if (got.lastCrossing) {
          ASSERT_EQ(fieldsOf(*got.lastCrossing), fieldsOf(*wanted.lastCrossing));
        }
      }
    }
  }
}

TEST(LineCounterDifference, ThereIsNoneToThePlainOne) {
  Told told;
  std::uint64_t seed = 100;
  for (const double offset : {0.0, 4.5e6, 1e15}) {
    for (const Grain grain : {Grain::Any, Grain::Whole, Grain::Almost}) {
      for (int scene = 0; scene < 30; ++scene) {
        Crowd crowd(++seed, offset, grain);
        // One word of lines, more than one, and a whole one.
        compare(crowd, std::array{5, 70, 64}[static_cast<std::size_t>(scene % 3)], told);
        ASSERT_FALSE(HasFatalFailure()) << "offset " << offset << ", seed " << seed;
      }
    }
  }
  EXPECT_GT(told.crossings, 40'000U);
  for (const CrossingVerdict verdict :
       {CrossingVerdict::NotSeen, CrossingVerdict::NeverClear, CrossingVerdict::NotOver,
        CrossingVerdict::OnLine, CrossingVerdict::TurnedBack, CrossingVerdict::PassedBeside,
        CrossingVerdict::Jumped, CrossingVerdict::Counted, CrossingVerdict::BeganOnLine}) {
    EXPECT_GT(told.verdicts[verdict], 1'000U) << describe(verdict);
  }
}

}  // namespace
}  // namespace orvantis::filter::monitor::testing
