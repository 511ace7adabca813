// For profile/ and its tests only: the text of a profile with one key or one section changed.
//
// Every line written ends with "\r\n", whatever ended it before; line feeds elsewhere and what
// passes kRewriteLine characters of a line are lost. Stretches that need none of this are handed
// on as they are.
#ifndef KORVEL_PROFILE_REWRITE_H
#define KORVEL_PROFILE_REWRITE_H

#include <optional>
#include <string_view>

#include "profile/lines.h"

namespace korvel::profile {

// Takes the new text, piece by piece.
class Output {
 public:
  virtual void write(std::string_view piece) = 0;

 protected:
  ~Output() = default;
};

// Sets a key of a section, or removes its line when there is no value. The first line with the key
// changes, later ones stay. A new key goes behind the last line of its section that is not empty, a
// new section to the end of the text, before its empty lines and behind one of its own.
void rewriteKey(std::string_view text, std::string_view section, std::string_view key,
                std::optional<std::string_view> value, Output &output);

// Puts `content`, as it is, in place of all lines of a section; without one the header stays alone.
// A section that is missing is added as by rewriteKey if there is content. The empty lines of the
// old section stay, behind the content, unless the section was the last.
void rewriteSection(std::string_view text, std::string_view section,
                    std::optional<std::string_view> content, Output &output);

}  // namespace korvel::profile

#endif
