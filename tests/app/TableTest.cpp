#include <sstream>

#include <gtest/gtest.h>

#include "Console.h"
#include "Table.h"

namespace orvantis::app {
namespace {

TEST(Table, AlignsByCharactersAndLeavesNoBlanksAtTheEnd) {
  std::ostringstream out;
  const Console console{out, out};
  Table table({"NAME", ">m²", "LAST"});
  table.addRow({"é", "10.5", "x"});
  table.addRow({"longer", "1", ""});
  table.print(console);
  EXPECT_EQ(out.str(),
            "  NAME      m²  LAST\n"
            "  é       10.5  x\n"
            "  longer     1\n");
}

}  // namespace
}  // namespace orvantis::app
