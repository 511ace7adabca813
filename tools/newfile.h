// SPDX-License-Identifier: MIT
// A file in the making: it stands beside its place under a name of its own until it is whole.
#ifndef KORVEL_TOOLS_NEWFILE_H
#define KORVEL_TOOLS_NEWFILE_H

#include <string>
#include <string_view>

#include <sys/stat.h>

namespace korvel::tools {

// As for every file that a user makes.
mode_t usualMode();

// Where the program ends before, by an exception or a signal that asks it to, the file is removed.
class NewFile {
 public:
  // Its name until then.
  static constexpr std::string_view kPattern = ".korvel-tables-XXXXXX";

  // place: an absolute path, from placeOf. A file that stands there already gives the new one its
  // owner, mode, access list and other attributes, as in an edit by the library; it has to be a
  // regular one that may be written. modeIfNew: where there is none.
  NewFile(const std::string &place, mode_t modeIfNew);
  ~NewFile();
  NewFile(const NewFile &) = delete;
  NewFile &operator=(const NewFile &) = delete;

  // Where it is until then, for whoever writes it by name.
  const std::string &path() const { return path_; }

  void write(std::string_view bytes);
  // Has the content reach the disk. Nothing can be written afterwards.
  void finish();
  // Finishes the file and puts it in its place, in one step.
  void commit();

 private:
  void resemble(const struct stat &old) const;

  const std::string place_;
  std::string path_;
  int file_ = -1;
};

}  // namespace korvel::tools

#endif
