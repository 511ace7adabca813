// SPDX-License-Identifier: MIT
// For files/, tables/ and profile/: replaces the content of a file as a whole.
//
// Killing the process, filling the disk or losing power at any moment leaves the old content or
// the new one, never a mixture (with one exception, below). The steps, in their order:
//
//  1. Open      A symbolic link is followed to its file, so the link itself stays. The file must be
//               regular and this process must be allowed to write it; if not, nothing is changed,
//               even if the folder would let the file be exchanged.
//  2. Temporary A nameless file in the same folder; where the file system has no such files, one
//               with a name from the start, readable only by its owner until step 4.
//  3. Write     The new content goes there. A short write fails the replacement.
//  4. Adopt     Owner, group, access list, extended attributes and mode are taken over from the
//               old file if this process may set them. Without the old group or access list the
//               group gets no more rights than everyone has, and the set-id bits are cleared.
//  5. Sync      The content reaches the disk, before any name leads to it.
//  6. Link      A nameless temporary gets its name.
//  7. Rename    The temporary takes the place of the file, in one step.
//  8. Folder    The folder reaches the disk, so that the new content survives a loss of power.
//
// commitAs() and commitNew() replace steps 6 and 7: the temporary gets a name that is free.
//
// Until step 7 the old file is untouched and a failure removes the temporary. A kill leaves no
// nameless temporary behind, except between steps 6 and 7. The next replacement of any file in that
// folder removes what a kill left:
//
//  - The names are ".korvel-0" to ".korvel-7": eight stats find all temporaries, and a folder of
//    thousands of files is never read. If all eight are in use, one is waited for as for a lock.
//  - A temporary is locked while it is written. An unlocked one is left over: that holds when a new
//    process has the old one's number, after a restart, and on another machine of a share that
//    passes locks on.
//  - Where locks cannot tell (the file system has none, or the temporary may not be opened) it is
//    left over once it has not changed for a minute (abandonedAfter).
//
// Where the folder does not admit the exchange (it is not writable, or it is sticky and the file
// someone else's, or the file is a mount point) the file is overwritten in place if the caller
// agrees. The content is gathered first, the bytes by which the file grows are on the disk before
// an old byte is touched, and the old bytes are restored if overwriting fails: only a broken disk
// or a kill while it overwrites leaves a mixture.
//
// Other hard links to the file keep the old content: writing through them would put it at risk.
#ifndef KORVEL_FILES_REPLACE_H
#define KORVEL_FILES_REPLACE_H

#include <functional>
#include <limits.h>
#include <span>
#include <string_view>

#include <sys/types.h>

namespace korvel::files {

enum class IfMissing {
  Fail,
  Create,  // readable, writable and executable by all, whatever the process's file mask
};

struct ReplaceRules {
  // Overwrites the file where its folder does not admit the exchange.
  bool inPlace = true;
  // For IfMissing::Create: treats an existing file as missing. It need not be writable, nothing is
  // taken over from it, and it is never overwritten in place. A symbolic link is replaced itself,
  // not its file.
  bool anew = false;
  // For IfMissing::Create: an open file that a new one resembles as in step 4, instead of being
  // open to all; below 0 for none.
  int like = -1;
};

// A replacement in progress. Content is appended in any number of calls (large pieces are best:
// each call costs a system call or more) and takes effect with commit(). A replacement destroyed
// before that leaves everything as it was.
class Replacement {
 public:
  Replacement() = default;
  ~Replacement() { discard(); }
  Replacement(const Replacement &) = delete;
  Replacement &operator=(const Replacement &) = delete;

  // Starts to replace the file at a POSIX path. Returns false, with nothing changed, when the file
  // may not be written, is not regular, is missing (with IfMissing::Fail), or no temporary can be
  // made.
  bool begin(const char *path, IfMissing ifMissing = IfMissing::Fail, ReplaceRules rules = {});

  // Appends the pieces, one after another. After a false, commit() only discards.
  bool append(std::span<const std::string_view> pieces);
  bool append(std::string_view piece) { return append(std::span(&piece, 1)); }

  // Puts the new content in the file's place and ends the replacement. On false the file is as it
  // was, unless the disk failed while the file was overwritten in place. stillWanted: asked just
  // before the rename; after a false from it commit() returns false with nothing changed.
  bool commit(const std::function<bool()> &stillWanted = {});

  // As commit(), but the new content appears at a free POSIX path on the same disk, and the file
  // stays as it is. On false, errno is EEXIST if the path was not free.
  bool commitAs(const char *path);

  // As commit(), for a file that was missing at begin(), but never replaces another one. On false,
  // errno is EEXIST if somebody else has made the file meanwhile.
  bool commitNew();

  // Ends the replacement; the file stays as it was.
  void discard();

 private:
  enum class Place { Unnamed, Named, Aside };  // where the new content is gathered

  bool findFile(const char *path, IfMissing ifMissing);
  bool openFolder();
  bool openOld(IfMissing ifMissing);
  void sweep() const;
  bool openTemporary();
  bool openNamed();
  bool openAside();
  bool settle();
  bool stillNamed();
  template <typename Make>
  bool takeName(Make make);
  bool giveName();
  bool appearAs(int folder, const char *name);
  bool linkedAs(int folder, const char *name);
  bool renamedAs(int folder, const char *name);
  bool exchange(const std::function<bool()> &stillWanted);
  bool mayOverwrite() const;
  bool overwrite();
  bool overwriteBeginning(off_t size);

  Place place_ = Place::Unnamed;
  ReplaceRules rules_;
  bool failed_ = false;
  int folder_ = -1;   // the file's folder
  int old_ = -1;      // the file, open for writing and if possible reading; -1: to be created
  int content_ = -1;  // what is being written
  char path_[PATH_MAX] = {};    // of the file itself, no symbolic link
  const char *name_ = nullptr;  // its last component, in path_
  char temporary_[16] = {};     // name of a named temporary, else ""
};

// Has the folder of a POSIX path reach the disk. content: an open file on the same disk.
void syncFolderOf(const char *path, int content);

// For tests: called before each step, which fails with the error number that it returns, if not 0.
// Temporary comes before a nameless one is made, Write once per system call, Overwrite once per
// stretch that is overwritten.
enum class ReplaceStep { Open, Temporary, Write, Adopt, Sync, Link, Rename, Folder, Overwrite };
using ReplaceFault = int (*)(ReplaceStep step);
extern ReplaceFault replaceFault;

// The seconds without a change after which a temporary is left over where locks cannot tell. A
// variable for tests.
extern int abandonedAfter;

}  // namespace korvel::files

#endif
