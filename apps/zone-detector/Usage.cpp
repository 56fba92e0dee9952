#include "Usage.h"

#include <string_view>
#include <vector>

#include <CLI/CLI.hpp>

#include "Console.h"
#include "document/Spelling.h"
#include "text/Text.h"

namespace orvantis::app {
namespace {

using namespace std::string_literals;

std::string quoted(const std::string& word) {
  return '"' + printable(word) + '"';
}

const CLI::App& chosen(const CLI::App& program) {
  const auto commands = program.get_subcommands();
  return commands.empty() ? program : *commands.front();
}

std::string meant(const std::string& word, const std::vector<std::string>& words) {
  const std::vector<std::string_view> candidates(words.begin(), words.end());
  const std::string_view nearWord = nearest(word, candidates);
  return nearWord.empty() ? ""s : "; did you mean " + quoted(std::string(nearWord)) + "?";
}

std::vector<std::string> optionsOf(const CLI::App& command) {
  std::vector<std::string> names;
  for (const CLI::Option* option : command.get_options()) {
    for (const std::string& name : option->get_lnames()) {
      names.push_back("--" + name);
    }
  }
  return names;
}

std::vector<std::string> commandsOf(const CLI::App& program) {
  std::vector<std::string> names;
  for (const CLI::App* command : program.get_subcommands([](const CLI::App*) { return true; })) {
    names.push_back(command->get_name());
  }
  return names;
}

// An unknown word comes first, because it explains more than a missing argument.
std::string strayWord(const CLI::App& program) {
  const CLI::App& command = chosen(program);
  const std::vector<std::string> words = program.remaining(true);
  if (words.empty()) {
    return "";
  }
  const std::string& word = words.front();
  if (word.size() > 1 && word[0] == '-') {
    const std::string name = word.substr(0, word.find('='));
    return "unknown option " + quoted(name) + meant(name, optionsOf(command));
  }
  if (&command == &program) {
    return "unknown command " + quoted(word) + meant(word, commandsOf(program));
  }
  return quoted(word) + " is one file or value too many";
}

// The parser's texts begin with the name of the option. A mark follows, then the rule.
struct Parts {
  std::string name;
  std::string rest;
};

Parts split(const std::string& text, const std::string& mark) {
  const std::size_t at = text.find(mark);
  return at == std::string::npos ? Parts{text, ""} : Parts{text.substr(0, at), text.substr(at + mark.size())};
}

}  // namespace

std::string usageFault(const CLI::App& program, const CLI::ParseError& error) {
  std::string stray = strayWord(program);
  const std::string text = error.what();
  if (!stray.empty()) {
    return stray;
  }
  if (dynamic_cast<const CLI::RequiredError*>(&error) != nullptr) {
    const std::string name = split(text, " is required").name;
    return (name == "A subcommand" ? "a command"s : name) + " is missing";
  }
  if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr) {
    return split(text, ": ").name + " needs a value";
  }
  if (dynamic_cast<const CLI::ConversionError*>(&error) != nullptr) {
    const Parts parts = split(split(text, "Could not convert: ").rest, " = ");
    return parts.name + " must be a number, not " + quoted(parts.rest);
  }
  if (dynamic_cast<const CLI::RequiresError*>(&error) != nullptr) {
    const Parts parts = split(text, " requires ");
    return parts.name + " needs " + parts.rest;
  }
  if (dynamic_cast<const CLI::ExcludesError*>(&error) != nullptr) {
    const Parts parts = split(text, " excludes ");
    return parts.name + " and " + parts.rest + " exclude each other";
  }
  const Parts parts = split(text, ": ");
  return parts.rest.empty() ? text : parts.name + " " + parts.rest;
}

std::string commandOf(const CLI::App& program) {
  const CLI::App& command = chosen(program);
  return &command == &program ? program.get_name() : program.get_name() + " " + command.get_name();
}

}  // namespace orvantis::app
