// SPDX-License-Identifier: MIT
// What a command line says of a table's first two lines.
#ifndef KORVEL_TOOLS_HEADING_H
#define KORVEL_TOOLS_HEADING_H

#include <string>

namespace korvel::tools {

class Arguments;

// In the bytes of a table.
struct Heading {
  std::string title;
  std::string version;

  std::string versionLine() const;
};

// Throws for what is missing, and for what a heading cannot be.
Heading headingOf(const Arguments &arguments);

}  // namespace korvel::tools

#endif
