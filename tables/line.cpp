#include "tables/line.h"

namespace korvel::tables {
namespace {

std::size_t positionOf(char c, std::string_view s) {
  const void *at = s.empty() ? nullptr : std::memchr(s.data(), c, s.size());
  return at == nullptr ? s.size()
                       : static_cast<std::size_t>(static_cast<const char *>(at) - s.data());
}

}  // namespace

void LineGatherer::append(std::string_view raw) {
  while (!raw.empty() && length_ < most_) {
    const std::size_t stretch = positionOf(kIgnored, raw);
    const std::size_t count = std::min(stretch, most_ - length_);
    std::memcpy(text_ + length_, raw.data(), count);
    length_ += count;
    raw.remove_prefix(std::min(stretch + 1, raw.size()));
  }
}

std::string_view keptOf(std::string_view raw, LineGatherer &scratch, std::size_t size) {
  if (raw.starts_with(kIgnored)) raw.remove_prefix(1);
  const std::string_view first = raw.substr(0, size - 1);
  if (positionOf(kIgnored, first) == first.size()) return first;
  scratch.clear();
  scratch.append(raw);
  return scratch.kept().substr(0, size - 1);
}

}  // namespace korvel::tables
