#include "counter/CounterLineText.h"

#include <ostream>

#include "counter/EndPoints.h"

namespace orvantis::filter::detection {

std::ostream& operator<<(std::ostream& out, const CounterLine& line) {
  const auto [first, second] = endPoints(line.getPoints());
  return out << R"("CounterLine":{"name":")" << line.getName()                 //
             << R"(","first":{"x:")" << first.x() << R"(","y:")" << first.y()  //
             << R"("},"second":{"x:")" << second.x() << R"(","y:")" << second.y() << R"("}})";
}

std::ostream& operator<<(std::ostream& out, const std::map<std::string, CounterLine>& lines) {
  out << R"("CounterLinesMap":)" << std::endl << '{';
  bool first = true;
  for (const auto& [name, line] : lines) {
    out << (first ? "" : ",") << line << std::endl;
    first = false;
  }
  return out << '}';
}

}  // namespace orvantis::filter::detection
