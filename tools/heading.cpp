// SPDX-License-Identifier: MIT
// Takes --title and --version, for the two commands that write them.
#include "tools/heading.h"

#include "tools/arguments.h"
#include "tools/edit.h"
#include "tools/failure.h"
#include "tools/tablefile.h"
#include "tools/text.h"

namespace korvel::tools {

std::string Heading::versionLine() const { return std::string(kVersionMark) + version; }

Heading headingOf(const Arguments &arguments) {
  Heading heading{fieldText(arguments.needed("title")), fieldText(arguments.needed("version"))};
  if (heading.title.empty()) throw Failure(kFailed, "a title cannot be empty");
  if (heading.title.starts_with(kVersionMark)) {
    throw Failure(kFailed, quoted(heading.title) + " would count as the version, not as the title");
  }
  checkNoMark(heading.title);
  checkLength(heading.title);
  checkLength(heading.versionLine());
  return heading;
}

}  // namespace korvel::tools
