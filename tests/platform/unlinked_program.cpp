// SPDX-License-Identifier: MIT
// Looks for a resource beside itself, takes its own file away, and finds the resource again.
// Succeeds when it was there both times.
#include <unistd.h>

#include "platform/librarypath.h"
#include "platform/resources.h"

int main(int, char **arguments) {
  using korvel::platform::executableFolder;
  using korvel::platform::findResource;
  const std::string before = findResource("pictures/puce", {".png"});
  if (before != executableFolder() + "/resources/pictures/puce.png") return 1;
  if (unlink(arguments[0]) != 0 || chdir("/") != 0) return 2;
  return findResource("pictures/puce", {".png"}) == before ? 0 : 3;
}
