#include "messages/wrapping.h"

#include <algorithm>

namespace korvel::messages {
namespace {

constexpr int kWidestColumn = 50;
constexpr int kLeastLines = 2;
constexpr char kLineEnd = '\r';

bool isLineEnd(char character) { return character == '\r' || character == '\n'; }

// French sets a space before a colon; a line must not begin with what belongs to the one before.
bool sticksToWhatPrecedes(char character) { return character == ':' || character == ','; }

}  // namespace

int wrapLines(std::string &text) {
  int lines = 1;
  int column = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    // Kept: a carriage return and line feed pair ends two lines, and a line end is itself counted
    // in the column.
    if (isLineEnd(text[i])) {
      text[i] = kLineEnd;
      ++lines;
      column = 0;
    }
    const char next = i + 1 < text.size() ? text[i + 1] : '\0';
    if (text[i] == ' ' && !sticksToWhatPrecedes(next) && column > kWidestColumn) {
      text[i] = kLineEnd;
      ++lines;
      column = 1;
    } else {
      ++column;
    }
  }
  return std::max(lines, kLeastLines);
}

}  // namespace korvel::messages
