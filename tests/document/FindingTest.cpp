#include <set>
#include <string_view>

#include <gtest/gtest.h>

#include "document/Finding.h"

// What is found in documents stands in tests/cases.

namespace orvantis::toolkit {
namespace {

TEST(Findings, EveryKindHasItsOwnId) {
  std::set<std::string_view> ids;
  for (int kind = 0; kind <= static_cast<int>(FindingKind::EmptyLine); ++kind) {
    EXPECT_TRUE(ids.insert(idOf(static_cast<FindingKind>(kind))).second) << kind;
  }
  EXPECT_EQ(ids.count(""), 0U);
  EXPECT_EQ(wordOf(severityOf(FindingKind::Refused)), "error");
  EXPECT_EQ(wordOf(severityOf(FindingKind::UnknownKey)), "warning");
}

}  // namespace
}  // namespace orvantis::toolkit
