#include <gtest/gtest.h>

#include "text/Table.h"

namespace orvantis::toolkit {
namespace {

Table sample() {
  Table table({"NAME", ">m²", "LAST"});
  table.addRow({"é", "10.5", "x"});
  table.addRow({"longer", "1", ""});
  return table;
}

TEST(Table, AlignsByCharactersAndLeavesNoBlanksAtTheEnd) {
  EXPECT_EQ(sample().text(false),
            "  NAME      m²  LAST\n"
            "  é       10.5  x\n"
            "  longer     1\n");
}

TEST(Table, HasBoldHeadingsAloneWhereColoursAreWanted) {
  EXPECT_EQ(sample().text(true),
            "\033[1m  NAME      m²  LAST\033[0m\n"
            "  é       10.5  x\n"
            "  longer     1\n");
}

TEST(Table, LetsNoCellSteerATerminal) {
  Table table({"NAME"});
  table.addRow({"a\033[2J\nb"});
  EXPECT_EQ(table.text(false), "  NAME\n  a\\x1b[2J\\x0ab\n");
}

}  // namespace
}  // namespace orvantis::toolkit
