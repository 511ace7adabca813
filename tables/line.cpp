// The characters that a reader keeps of a line, line feeds left out.
#include "tables/line.h"

namespace korvel::tables {

std::string_view keptOf(std::string_view raw, LineScratch &scratch, std::size_t size) {
  if (raw.starts_with(kIgnored)) raw.remove_prefix(1);
  const std::string_view first = raw.substr(0, size - 1);
  if (first.find(kIgnored) == std::string_view::npos) return first;
  std::size_t length = 0;
  for (const char c : raw) {
    if (length == size - 1) break;
    if (c != kIgnored) scratch.text[length++] = c;
  }
  return {scratch.text, length};
}

}  // namespace korvel::tables
