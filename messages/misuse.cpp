// SPDX-License-Identifier: MIT
// Misuse of messages: texts that are too long, or in another encoding.
#include "messages/misuse.h"

namespace korvel::messages {
namespace {

void needsTexts(const Call &call, std::string_view text, std::string_view caption) {
  needsCp1252(call, "the text", text);
  needsCp1252(call, "the caption", caption);
}

}  // namespace

void needsMessage(const Call &call, std::string_view text, std::string_view caption) {
  needsTexts(call, text, caption);
  call.misusedIf(
      text.size() > kLongestText,
      {"a text of ", text.size(), " characters is not shown: at most ", kLongestText, " are"});
  call.misusedIf(caption.size() > kLongestCaption,
                 {"with a caption of ", caption.size(), " characters nothing is shown: at most ",
                  kLongestCaption, " are possible"});
}

void needsLines(const Call &call, std::string_view text, std::string_view caption, int lines) {
  needsTexts(call, text, caption);
  call.misusedIf(lines < 1, {"a number of ", lines, " lines counts as 1"});
}

void needsTitle(const Call &call, std::string_view title, std::size_t longest) {
  needsCp1252(call, "the title", title);
  needsFit(call, "the title", title.size(), longest);
}

}  // namespace korvel::messages
