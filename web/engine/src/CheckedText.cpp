#include "CheckedText.h"

#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include "text/Text.h"

namespace orvantis::engine {
namespace {

struct Last {
  std::string text;
  toolkit::CheckedDocument document;
};

}  // namespace

const toolkit::CheckedDocument& checked(std::string_view text) {
  static std::optional<Last> last;
  if (!last || last->text != text) {
    last.reset();  // before it is checked: half of another document would be one too many
    toolkit::CheckedDocument document = toolkit::check(text);
    last.emplace(Last{std::string(text), std::move(document)});
  }
  return last->document;
}

const toolkit::Configuration& configurationOf(std::string_view text) {
  const toolkit::CheckedDocument& document = checked(text);
  if (!document.configuration) {
    throw std::invalid_argument("the document has " + toolkit::counted(document.errors(), "error"));
  }
  return *document.configuration;
}

}  // namespace orvantis::engine
