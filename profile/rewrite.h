// SPDX-License-Identifier: MIT
// For profile/: the text of a profile with one key or one section changed.
//
// Every line is written with "\r\n" at its end and without other line feeds, cut at kRewriteLine
// characters. Stretches of lines that are so already are passed on whole.
#ifndef KORVEL_PROFILE_REWRITE_H
#define KORVEL_PROFILE_REWRITE_H

#include <optional>
#include <string_view>

#include "profile/lines.h"

namespace korvel::profile {

// Receives the new text, piece by piece.
class Output {
 public:
  virtual void write(std::string_view piece) = 0;

 protected:
  ~Output() = default;
};

// Sets a key of a section, or removes its line if there is no value. The first line with the key
// changes, later ones stay. A new key is added after the last line of its section that is not
// empty. A new section is added after the last line of the text that is not empty, with an empty
// line in front of it unless the text is empty.
void rewriteKey(std::string_view text, std::string_view section, std::string_view key,
                std::optional<std::string_view> value, Output &output);

// Replaces all lines of a section by `content`, unchanged; without content only the header is left.
// A missing section is added as by rewriteKey if there is content. The empty lines of the old
// section stay, after the content, unless the section was the last.
void rewriteSection(std::string_view text, std::string_view section,
                    std::optional<std::string_view> content, Output &output);

}  // namespace korvel::profile

#endif
