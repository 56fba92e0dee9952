#include "Command.h"

#include <CLI/CLI.hpp>

namespace orvantis::app {

CLI::App& addCommand(CLI::App& program, const CommandText& text) {
  return *program.add_subcommand(text.name, text.summary)->footer(text.help);
}

}  // namespace orvantis::app
