#pragma once

#include <string>

namespace CLI {
class App;
class ParseError;
}  // namespace CLI

namespace orvantis::app {

/// What is wrong with the command line, in a sentence, with the word that was probably meant.
std::string usageFault(const CLI::App& program, const CLI::ParseError& error);

/// The command whose help the user should read: "zone-detector run", or the program itself.
std::string commandOf(const CLI::App& program);

}  // namespace orvantis::app
