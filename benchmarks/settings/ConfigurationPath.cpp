// How long it takes to make a detector from the text of a configuration: checking the untrusted text, reading
// it into a store, and loading from the store. Compared with property_tree's own reader on the same text.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <iostream>
#include <limits>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <boost/property_tree/json_parser.hpp>

#include <filter/detection/Polygon.h>
#include <filter/detection/ZoneDetector.h>
#include <settings/SettingsManager.h>

namespace {

using orvantis::SettingsManager;
using orvantis::filter::detection::Point;
using orvantis::filter::detection::Polygon;
using orvantis::filter::detection::Zone3dBase;
using orvantis::filter::detection::ZoneDetector;

constexpr std::size_t FILE_SIZE_LIMIT = 102400;

// A polygon of as many vertices as are allowed, at whole millimetres.
std::shared_ptr<Zone3dBase> makeZone(const std::string& name, std::mt19937& random) {
  constexpr double pi = 3.141592653589793;
  const auto uniform = [&random](double from, double to) {
    return from + (to - from) * static_cast<double>(random()) / static_cast<double>(std::mt19937::max());
  };
  const auto toMillimetres = [](double metres) { return std::round(metres * 1000.0) / 1000.0; };
  const double x = uniform(-80.0, 80.0);
  const double y = uniform(-80.0, 80.0);
  std::vector<Point> points;
  for (int i = 0; i < Polygon::MAX_NUM_POLYGON_SIDES; ++i) {
    const double bearing = -2.0 * pi * i / Polygon::MAX_NUM_POLYGON_SIDES;
    const double radius = uniform(2.0, 5.0);
    points.emplace_back(toMillimetres(x + radius * std::cos(bearing)),
                        toMillimetres(y + radius * std::sin(bearing)));
  }
  return std::make_shared<Zone3dBase>(std::make_shared<Polygon>(name, points), 0.2, 2.5);
}

// Indents the text by four blanks like a person: an object without other objects, such as a vertex, stays on
// one line, with its numbers in columns. The strings of the text have no brackets, commas, colons and quotes.
std::string indented(const std::string& text) {
  constexpr std::size_t columnWidth = 26;
  std::string lines;
  std::size_t depth = 0;
  bool isQuoted = false;
  bool isInline = false;
  const auto startLine = [&] { lines += isInline ? " " : '\n' + std::string(4 * depth, ' '); };
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    isQuoted = isQuoted != (c == '"');
    if (!isQuoted && (c == ' ' || c == '\n')) {
      continue;
    }
    const bool isEnd = c == '}' || c == ']';
    if (isEnd && !isInline) {
      --depth;
      startLine();
    }
    lines += c;
    if (c == '{' || c == '[') {
      isInline = text[text.find_first_of("{}[", i + 1)] == '}';
      depth += isInline ? 0 : 1;
      if (!isInline) {
        startLine();
      }
    } else if (c == ',') {
      startLine();
    } else if (c == ':') {
      const std::size_t length = text.find_first_of(",}", i) - i;
      lines.append(isInline && length < columnWidth ? columnWidth - length : 1, ' ');
    }
    isInline = isInline && !isEnd;
  }
  return lines;
}

// The largest configuration: every field with every zone, and every exclusion zone.
std::string makeDocument() {
  std::mt19937 random(1);
  ZoneDetector detector;
  for (int field = 0; field < ZoneDetector::NUM_EVAL_FIELDS; ++field) {
    auto evaluationField = std::make_shared<ZoneDetector::EvaluationField>();
    evaluationField->name = "field " + std::to_string(field);
    detector.setEvaluationField(evaluationField, field);
    for (int zone = 0; zone < ZoneDetector::NUM_ZONES_PER_EVAL_FIELD; ++zone) {
      detector.setZone(makeZone("zone " + std::to_string(field) + "." + std::to_string(zone), random), field,
                       zone);
    }
  }
  for (int zone = 0; zone < ZoneDetector::MAX_NUM_EXCLUSION_ZONES; ++zone) {
    detector.appendExclusionZone(makeZone("exclusion " + std::to_string(zone), random));
  }
  SettingsManager settings;
  detector.save(settings);
  std::ostringstream out;
  const bool isSaved = settings.saveStream(out, SettingsManager::JSON);
  const std::string text = indented(out.str());
  if (!isSaved || text.size() >= FILE_SIZE_LIMIT) {
    std::cerr << "the document cannot be made: " << text.size() << " bytes\n";
    std::exit(EXIT_FAILURE);
  }
  return text;
}

const std::string& document() {
  static const std::string text = makeDocument();
  return text;
}

void readByPropertyTree(const std::string& text) {
  std::istringstream in(text);
  boost::property_tree::ptree tree;
  boost::property_tree::read_json(in, tree);
  benchmark::DoNotOptimize(tree);
}

void readIntoStore(const std::string& text) {
  std::istringstream in(text);
  SettingsManager settings;
  if (!settings.loadStream(in, SettingsManager::JSON)) {
    std::abort();
  }
}

void check(const std::string& text) {
  std::istringstream in(text);
  ZoneDetector::validate(in);
}

// Everything that a host does with a configuration file.
void configure(const std::string& text) {
  check(text);
  std::istringstream in(text);
  SettingsManager settings;
  if (!settings.loadStream(in, SettingsManager::JSON)) {
    std::abort();
  }
  ZoneDetector detector;
  detector.load(settings);
  benchmark::DoNotOptimize(detector);
}

void run(benchmark::State& state, void (*action)(const std::string&)) {
  for (auto _ : state) {
    action(document());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(document().size()));
}
BENCHMARK_CAPTURE(run, property_tree_read_json, readByPropertyTree)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(run, loadStream, readIntoStore)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(run, validate, check)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(run, validate_loadStream_load, configure)->Unit(benchmark::kMicrosecond);

double threadSeconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

// Runs both in turn, so that other work of the machine slows both alike, and takes the best time of each.
void wholeAgainstReadJson(benchmark::State& state) {
  double whole = std::numeric_limits<double>::infinity();
  double readJson = whole;
  for (auto _ : state) {
    const double start = threadSeconds();
    configure(document());
    const double middle = threadSeconds();
    readByPropertyTree(document());
    const double end = threadSeconds();
    whole = std::min(whole, middle - start);
    readJson = std::min(readJson, end - middle);
  }
  state.counters["ratio"] = whole / readJson;
  state.counters["bytes"] = static_cast<double>(document().size());
}
BENCHMARK(wholeAgainstReadJson)->Unit(benchmark::kMicrosecond)->MinTime(2.0);

// Reads a list and walks it by position, asking for its length before each step.
void walkList(benchmark::State& state) {
  std::string text = "{\"Zone\": [";
  for (std::int64_t i = 0; i < state.range(0); ++i) {
    text += (i == 0 ? "{\"index\": " : ", {\"index\": ") + std::to_string(i) + "}";
  }
  text += "]}";
  for (auto _ : state) {
    std::istringstream in(text);
    SettingsManager settings;
    if (!settings.loadStream(in, SettingsManager::JSON)) {
      std::abort();
    }
    std::int64_t sum = 0;
    for (int i = 0; i < settings.getChildCount("Zone"); ++i) {
      settings.pathPush("Zone", i, nullptr);
      sum += settings.get<int>("index");
      settings.pathPop();
    }
    benchmark::DoNotOptimize(sum);
  }
  state.SetComplexityN(state.range(0));
  state.counters["per entry"] =
      benchmark::Counter(static_cast<double>(state.range(0)) * static_cast<double>(state.iterations()),
                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(walkList)->RangeMultiplier(10)->Range(100, 100000)->Unit(benchmark::kMicrosecond)->Complexity();

}  // namespace

BENCHMARK_MAIN();
