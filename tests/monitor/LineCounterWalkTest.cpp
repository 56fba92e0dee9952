#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <filter/monitor/LineCounter.h>

#include "Frames.h"

// Random walks on a grid of integers, so that objects often touch, stand on and run through the ends of
// lines. The judge looks at a whole walk at once and in integers: it projects the meeting points onto the
// line as fractions, where the counter follows the walk step by step and asks for orientations.
namespace orvantis::filter::monitor::testing {
namespace {

using Side = detection::CounterLineDirectionType;

struct GridPoint {
  std::int64_t x = 0;
  std::int64_t y = 0;
};

struct GridLine {
  GridPoint first;
  GridPoint second;
  std::int64_t length = 0;  // an integer, so that a clearance in units of the plan is exact
};

struct Seen {
  std::int64_t second = 0;
  GridPoint centre;
};

struct Walk {
  GridPoint halfExtent;    // of the footprint
  bool isDiamond = false;  // or an axis-parallel box
  std::vector<Seen> sightings;
};

struct Rules {
  std::int64_t forgetAfter = 0;  // seconds
  std::int64_t clearance = 0;
  std::optional<std::int64_t> maxSpeed;
};

struct Judged {
  Side to = Side::LEFT;
  double met = 0.0;  // seconds
  std::int64_t accepted = 0;
};

std::vector<GridPoint> outline(const Walk& walk, const GridPoint& centre) {
  const auto [a, b] = walk.halfExtent;
  const auto [x, y] = centre;
  return walk.isDiamond
             ? std::vector<GridPoint>{{x - a, y}, {x, y + b}, {x + a, y}, {x, y - b}}
             : std::vector<GridPoint>{{x - a, y - b}, {x - a, y + b}, {x + a, y + b}, {x + a, y - b}};
}

// Twice the signed area over the line; positive on its left.
std::int64_t height(const GridLine& line, const GridPoint& p) {
  return (line.second.x - line.first.x) * (p.y - line.first.y) -
         (line.second.y - line.first.y) * (p.x - line.first.x);
}

// 1 or -1 on the side on which the footprint is clear, else 0.
int clearSide(const GridLine& line, const Walk& walk, const GridPoint& centre, const Rules& rules) {
  std::int64_t lowest = height(line, centre);
  std::int64_t highest = lowest;
  for (const GridPoint& vertex : outline(walk, centre)) {
    lowest = std::min(lowest, height(line, vertex));
    highest = std::max(highest, height(line, vertex));
  }
  const std::int64_t margin = std::max<std::int64_t>(rules.clearance * line.length, 1);
  return lowest >= margin ? 1 : highest <= -margin ? -1 : 0;
}

// Whether the step, known to meet the line, meets it between the segment's ends, and at which share of the
// way.
std::optional<double> passes(const GridLine& line, const GridPoint& from, const GridPoint& to) {
  const std::int64_t before = height(line, from);
  const std::int64_t whole = before - height(line, to);
  const GridPoint along{line.second.x - line.first.x, line.second.y - line.first.y};
  const auto progress = [&](const GridPoint& p) {
    return along.x * (p.x - line.first.x) + along.y * (p.y - line.first.y);
  };
  // The projection of the meeting point, as a fraction of `whole`.
  std::int64_t projection = progress(from) * (whole - before) + progress(to) * before;
  std::int64_t end = (along.x * along.x + along.y * along.y) * whole;
  if (whole < 0) {
    projection = -projection;
    end = -end;
  }
  if (projection < 0 || projection > end) {
    return std::nullopt;
  }
  return static_cast<double>(before) / static_cast<double>(whole);
}

// Judges a stretch of sightings during which the track is one object.
void judgeStretch(const GridLine& line, const Walk& walk, std::size_t begin, std::size_t end,
                  const Rules& rules, std::vector<Judged>& judged) {
  std::optional<std::size_t> lastClear;
  for (std::size_t now = begin; now < end; ++now) {
    const int side = clearSide(line, walk, walk.sightings[now].centre, rules);
    if (side == 0) {
      continue;
    }
    if (lastClear && clearSide(line, walk, walk.sightings[*lastClear].centre, rules) == -side) {
      int sum = 0;
      double met = 0.0;
      for (std::size_t i = *lastClear; i < now; ++i) {
        const auto& [from, to] = std::tie(walk.sightings[i], walk.sightings[i + 1]);
        const int fromSide = height(line, from.centre) > 0 ? 1 : -1;
        const int toSide = height(line, to.centre) > 0 ? 1 : -1;
        if (fromSide == toSide) {
          continue;
        }
        if (const auto share = passes(line, from.centre, to.centre)) {
          sum += toSide;
          if (toSide == side) {
            met = static_cast<double>(from.second) + *share * static_cast<double>(to.second - from.second);
          }
        }
      }
      if (sum * side > 0) {
        judged.push_back({side > 0 ? Side::LEFT : Side::RIGHT, met, walk.sightings[now].second});
      }
    }
    lastClear = now;
  }
}

std::vector<Judged> judge(const GridLine& line, const Walk& walk, const Rules& rules) {
  std::vector<Judged> judged;
  std::size_t begin = 0;
  for (std::size_t i = 1; i <= walk.sightings.size(); ++i) {
    bool isOther = i == walk.sightings.size();
    if (!isOther) {
      const Seen& from = walk.sightings[i - 1];
      const Seen& to = walk.sightings[i];
      const std::int64_t time = to.second - from.second;
      const std::int64_t dx = to.centre.x - from.centre.x;
      const std::int64_t dy = to.centre.y - from.centre.y;
      const bool isTooFast =
          rules.maxSpeed && dx * dx + dy * dy > *rules.maxSpeed * *rules.maxSpeed * time * time;
      isOther = time >= rules.forgetAfter || isTooFast;
    }
    if (isOther) {
      judgeStretch(line, walk, begin, i, rules, judged);
      begin = i;
    }
  }
  return judged;
}

class RandomWalks {
 public:
  explicit RandomWalks(std::uint64_t seed) : random_(seed) {}

  std::int64_t between(std::int64_t low, std::int64_t high) {
    return std::uniform_int_distribution<std::int64_t>(low, high)(random_);
  }

  GridLine line() {
    // Sides of right triangles with an integer hypotenuse.
    constexpr std::array<GridLine, 6> directions = {{{{}, {6, 0}, 6},
                                                     {{}, {0, 5}, 5},
                                                     {{}, {3, 4}, 5},
                                                     {{}, {-8, 6}, 10},
                                                     {{}, {5, -12}, 13},
                                                     {{}, {-4, -3}, 5}}};
    GridLine line = directions[static_cast<std::size_t>(between(0, 5))];
    line.first = {between(-3, 3), between(-3, 3)};
    line.second.x += line.first.x;
    line.second.y += line.first.y;
    return line;
  }

  Rules rules() {
    Rules rules;
    rules.forgetAfter = between(2, 6);
    rules.clearance = between(0, 3) == 0 ? between(1, 2) : 0;
    if (between(0, 3) == 0) {
      rules.maxSpeed = between(3, 10);
    }
    return rules;
  }

  Walk walk() {
    Walk walk;
    walk.halfExtent = {between(0, 3), between(0, 3)};
    walk.isDiamond = between(0, 1) == 1;
    const std::int64_t speed =
        std::array<std::int64_t, 4>{1, 2, 6, 20}[static_cast<std::size_t>(between(0, 3))];
    const std::int64_t pause = between(1, 3);
    Seen seen{between(0, 3), {between(-10, 10), between(-10, 10)}};
    const std::int64_t steps = between(4, 14);
    for (std::int64_t i = 0; i < steps; ++i) {
      walk.sightings.push_back(seen);
      seen.second += between(1, pause);
      seen.centre.x += between(-speed, speed);
      seen.centre.y += between(-speed, speed);
      if (std::abs(seen.centre.x) > 12 || std::abs(seen.centre.y) > 12) {
        seen.centre = {seen.centre.x / 2, seen.centre.y / 2};
      }
    }
    return walk;
  }

 private:
  std::mt19937_64 random_;
};

PlanarPoint planar(const GridPoint& p) {
  return {static_cast<double>(p.x), static_cast<double>(p.y)};
}

TrackedObject objectOf(const Walk& walk, std::int32_t id, const GridPoint& centre) {
  std::vector<PlanarPoint> vertices;
  for (const GridPoint& vertex : outline(walk, centre)) {
    vertices.push_back(planar(vertex));
  }
  return {id, core::State(ring(vertices)), 0.0, 1.0, ""};
}

std::string text(const GridLine& line, const Walk& walk, const Rules& rules) {
  std::ostringstream out;
  out << "line (" << line.first.x << ", " << line.first.y << ") (" << line.second.x << ", " << line.second.y
      << "), " << (walk.isDiamond ? "diamond " : "box ") << walk.halfExtent.x << " " << walk.halfExtent.y
      << ", forget " << rules.forgetAfter << ", clearance " << rules.clearance << ", max speed "
      << rules.maxSpeed.value_or(-1) << ", walk";
  for (const Seen& seen : walk.sightings) {
    out << " " << seen.second << ":(" << seen.centre.x << ", " << seen.centre.y << ")";
  }
  return out.str();
}

LineCounterOptions options(const Rules& rules) {
  LineCounterOptions options;
  options.forgetAfter = std::chrono::seconds(rules.forgetAfter);
  options.clearance = static_cast<double>(rules.clearance);
  if (rules.maxSpeed) {
    options.maxSpeed = static_cast<double>(*rules.maxSpeed);
  }
  return options;
}

std::map<std::string, detection::CounterLine> counterLines(const std::vector<GridLine>& lines) {
  std::map<std::string, detection::CounterLine> result;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const std::string name(1, static_cast<char>('A' + i));
    result.emplace(name, detection::CounterLine(name, planar(lines[i].first), planar(lines[i].second),
                                                nullptr, Side::LEFT));
  }
  return result;
}

// Feeds all walks at once, each under its number, and sorts the crossings by line and walk.
std::map<std::pair<std::string, std::int32_t>, std::vector<Crossing>> count(
    const std::vector<GridLine>& lines, const std::vector<Walk>& walks, const Rules& rules) {
  std::map<std::int64_t, std::vector<TrackedObject>> frames;
  for (std::size_t i = 0; i < walks.size(); ++i) {
    for (const Seen& seen : walks[i].sightings) {
      frames[seen.second].push_back(objectOf(walks[i], static_cast<std::int32_t>(i), seen.centre));
    }
  }
  LineCounter counter(counterLines(lines), options(rules));
  std::map<std::pair<std::string, std::int32_t>, std::vector<Crossing>> crossings;
  for (const auto& [second, objects] : frames) {
    for (const Crossing& crossing : counter.update(std::chrono::seconds(second), objects)) {
      crossings[{crossing.line, crossing.id}].push_back(crossing);
    }
  }
  return crossings;
}

TEST(LineCounterWalks, AgreeWithTheJudge) {
  constexpr int scenes = 5'000;
  constexpr int walksPerScene = 20;  // 100,000 walks, each past two lines
  RandomWalks random(20241121);
  std::size_t total = 0;
  for (int scene = 0; scene < scenes; ++scene) {
    const std::vector<GridLine> lines = {random.line(), random.line()};
    const Rules rules = random.rules();
    std::vector<Walk> walks;
    for (int i = 0; i < walksPerScene; ++i) {
      walks.push_back(random.walk());
    }
    auto counted = count(lines, walks, rules);
    for (std::size_t l = 0; l < lines.size(); ++l) {
      for (std::size_t w = 0; w < walks.size(); ++w) {
        const auto expected = judge(lines[l], walks[w], rules);
        const auto& actual =
            counted[{std::string(1, static_cast<char>('A' + l)), static_cast<std::int32_t>(w)}];
        total += expected.size();
        ASSERT_EQ(actual.size(), expected.size()) << text(lines[l], walks[w], rules);
        for (std::size_t i = 0; i < expected.size(); ++i) {
          ASSERT_EQ(actual[i].to, expected[i].to) << text(lines[l], walks[w], rules);
          ASSERT_NE(actual[i].from, actual[i].to);
          ASSERT_EQ(actual[i].accepted, std::chrono::seconds(expected[i].accepted));
          ASSERT_NEAR(static_cast<double>(actual[i].met.count()), expected[i].met * 1e9, 1.0)
              << text(lines[l], walks[w], rules);
        }
      }
    }
  }
  EXPECT_GT(total, 25'000U);
}

int sign(std::int64_t value) {
  return (value > 0) - (value < 0);
}

bool isInTriangle(const GridPoint& p, const GridPoint& a, const GridPoint& b, const GridPoint& c) {
  const int ab = sign(height({a, b, 0}, p));
  const int bc = sign(height({b, c, 0}, p));
  const int ca = sign(height({c, a, 0}, p));
  const bool left = ab > 0 || bc > 0 || ca > 0;
  const bool right = ab < 0 || bc < 0 || ca < 0;
  return !(left && right);  // a flat triangle takes in its whole line, which is on the safe side
}

// Whether a count may depend on one sighting: where it is the only one of its stay on a side, or an end of
// the segment lies between the way over it and the way past it.
bool mayMatter(const GridLine& line, const Walk& walk, std::size_t at, const Rules& rules) {
  const auto sideAt = [&](std::size_t i) { return clearSide(line, walk, walk.sightings[i].centre, rules); };
  const bool isFirst = at == 0;
  const bool isLast = at + 1 == walk.sightings.size();
  const bool isAlone = (isFirst || sideAt(at - 1) != sideAt(at)) && (isLast || sideAt(at + 1) != sideAt(at));
  if (sideAt(at) != 0 && isAlone) {
    return true;
  }
  if (isFirst || isLast) {
    return false;
  }
  const GridPoint& here = walk.sightings[at].centre;
  const GridPoint& before = walk.sightings[at - 1].centre;
  const GridPoint& after = walk.sightings[at + 1].centre;
  return isInTriangle(line.first, before, here, after) || isInTriangle(line.second, before, here, after);
}

// How far the count is independent of the frame rate.
TEST(LineCounterWalks, LeavingOutASightingChangesNoCountUnlessItWasTheOnlyClearOneOrAnEndLiesBetween) {
  RandomWalks random(7);
  const Rules rules{1000, 0, std::nullopt};
  int leftOut = 0;
  int leftOutClear = 0;
  int changed = 0;
  for (int i = 0; i < 20'000; ++i) {
    const GridLine line = random.line();
    const Walk walk = random.walk();
    const auto at =
        static_cast<std::size_t>(random.between(0, static_cast<std::int64_t>(walk.sightings.size()) - 1));
    Walk thinned = walk;
    thinned.sightings.erase(thinned.sightings.begin() + static_cast<std::ptrdiff_t>(at));
    const auto whole = count({line}, {walk}, rules)[{"A", 0}];
    const auto part = count({line}, {thinned}, rules)[{"A", 0}];
    if (mayMatter(line, walk, at, rules)) {
      changed += whole.size() != part.size() ? 1 : 0;
      continue;
    }
    ++leftOut;
    leftOutClear += clearSide(line, walk, walk.sightings[at].centre, rules) != 0 ? 1 : 0;
    ASSERT_EQ(part.size(), whole.size()) << text(line, walk, rules) << ", without number " << at;
    for (std::size_t k = 0; k < whole.size(); ++k) {
      ASSERT_EQ(part[k].to, whole[k].to) << text(line, walk, rules) << ", without number " << at;
    }
  }
  EXPECT_GT(leftOut, 8'000);
  EXPECT_GT(leftOutClear, 2'000);
  EXPECT_GT(changed, 500);  // so it does matter there
}

}  // namespace
}  // namespace orvantis::filter::monitor::testing
