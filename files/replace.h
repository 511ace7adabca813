// For files/, tables/ and profile/ only: replaces the content of a file as a whole.
//
// Killing the process, filling the disk or losing power at any moment leaves the old content or
// the new one, never a mixture (with one exception, below). The steps, in their order:
//
//  1. Open      A symbolic link is followed to the file it stands for, so the link itself stays.
//               The file must be a regular one that this process may write; nothing is changed
//               where it is not, even if the folder would let the file be exchanged.
//  2. Temporary A nameless file in the same folder; where the file system has none, one that has
//               its name from the start, readable by its owner only until step 4.
//  3. Write     The new content goes there. A write that falls short fails the replacement.
//  4. Adopt     Owner, group, access list, extended attributes and mode are taken over from the
//               old file, as far as this process may give them. A group or an access list that
//               cannot be kept leaves the group no more rights than everyone has, and the set-id
//               bits go.
//  5. Sync      The content reaches the disk, before any name leads to it.
//  6. Link      A nameless temporary gets its name.
//  7. Rename    The temporary takes the place of the file, in one step.
//  8. Folder    The folder reaches the disk, so that the new content outlives a loss of power. A
//               caller may do without.
//
// commitAs() and commitNew() end otherwise: the temporary gets a name that nothing bears, instead
// of steps 6 and 7.
//
// Until step 7 the old file is untouched and a failure removes the temporary. A kill leaves none
// behind if it is nameless, but for the instant between steps 6 and 7. What it did leave, the next
// replacement of whatever file in that folder removes:
//
//  - The names are ".korvel-0" to ".korvel-7", so eight looks find all there can be, and a folder
//    of thousands of files is never read. Who finds all eight in use waits for one, as for a lock.
//  - Whoever writes a temporary has it locked. One that is not locked is left over, even when a new
//    process bears the number of the old one, after a restart, and on another machine of a share
//    that passes locks on.
//  - Where no lock can tell (the file system has none, or the temporary may not be opened) it is
//    left over when it did not change for a minute (abandonedAfter).
//
// Only where the folder does not admit the exchange (it is not writable, or sticky and the file
// someone else's, or the file is a mount point) is the file overwritten in place, unless the caller
// would rather have it left as it is: the content is gathered first, what the file grows by is on
// the disk before an old byte is touched, and the old bytes are put back when the overwriting
// fails, so that nothing but a broken disk or a kill in its midst leaves a mixture.
//
// A file with several hard links gets a new content under this one name; its other names keep the
// old content. Writing through them would put the old content at risk.
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

// What a caller may settle for.
struct ReplaceRules {
  // The file is overwritten where its folder does not admit the exchange.
  bool inPlace = true;
  // Step 8; without it a loss of power soon after may bring the old file back.
  bool folderSync = true;
  // For IfMissing::Create: a file that is there gives way as if it were missing. It need not be
  // writable, nothing is taken over from it, and it is never overwritten in place. A symbolic link
  // gives way itself; what it leads to stays as it is.
  bool anew = false;
  // For IfMissing::Create: an open file from which a new one takes over what step 4 says, instead
  // of being open to all; below 0 for none.
  int like = -1;
};

// A replacement in progress. Content is appended in any number of calls (each costs a system call
// or more: give large pieces) and takes effect with commit(); a replacement destroyed before that
// leaves everything as it was.
class Replacement {
 public:
  Replacement() = default;
  ~Replacement() { discard(); }
  Replacement(const Replacement &) = delete;
  Replacement &operator=(const Replacement &) = delete;

  // Starts to replace the file at a POSIX path (not kept). Returns false, with nothing changed,
  // when the file may not be written, is not a regular file, is missing (unless it is to be
  // created), or no temporary can be made.
  bool begin(const char *path, IfMissing ifMissing = IfMissing::Fail, ReplaceRules rules = {});

  // Appends the pieces, one after another. After a false the replacement can only be discarded,
  // and commit() will do just that.
  bool append(std::span<const std::string_view> pieces);
  bool append(std::string_view piece) { return append(std::span(&piece, 1)); }

  // Puts the new content in the file's place. Returns true when the file now has it; on false the
  // file is as it was (but for a disk that fails while the file is overwritten in place). Ends the
  // replacement in both cases. stillWanted: asked just before the new content takes its name; when
  // it says no, commit() returns false with nothing changed.
  bool commit(const std::function<bool()> &stillWanted = {});

  // As commit(), but the new content appears at a POSIX path that nothing bears yet, on the same
  // disk, and the file stays as it is. On false, errno is EEXIST when something bears the path.
  bool commitAs(const char *path);

  // As commit(), for a file that begin() found missing, but never takes the place of another one.
  // On false, errno is EEXIST when somebody else has made the file meanwhile.
  bool commitNew();

  // Ends the replacement and leaves the file as it was.
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

// For tests: asked before each step; an error number other than 0 makes the step fail with it.
// Temporary is the making of a nameless one, Write comes once per system call, Overwrite once per
// stretch written in place.
enum class ReplaceStep { Open, Temporary, Write, Adopt, Sync, Link, Rename, Folder, Overwrite };
using ReplaceFault = int (*)(ReplaceStep step);
extern ReplaceFault replaceFault;

// Seconds without a change after which a temporary counts as left by a kill where no lock can tell.
// A variable for tests.
extern int abandonedAfter;

}  // namespace korvel::files

#endif
