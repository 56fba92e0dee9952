// CounterLines::load never throws for a document, and the lines are the same after saving and loading.

#include <filter/detection/CounterLines.h>

#include "Check.h"
#include "Documents.h"

using orvantis::SettingsManager;
using orvantis::filter::detection::CounterLines;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  SettingsManager document;
  if (!orvantis::fuzz::loadDocument(document, data, size)) {
    return 0;
  }
  CounterLines first;
  first.load(document);
  SettingsManager saved;
  first.save(saved);
  CounterLines second;
  second.load(saved);
  const auto lines = first.clone();
  const auto linesAgain = second.clone();
  ORVANTIS_FUZZ_CHECK(lines.size() == linesAgain.size());
  for (const auto& [name, line] : lines) {
    const auto other = linesAgain.find(name);
    ORVANTIS_FUZZ_CHECK(other != linesAgain.end());
    for (std::size_t i = 0; i < 2; ++i) {
      ORVANTIS_FUZZ_CHECK(line.getPoints()[i].x() == other->second.getPoints()[i].x());
      ORVANTIS_FUZZ_CHECK(line.getPoints()[i].y() == other->second.getPoints()[i].y());
    }
  }
  return 0;
}
