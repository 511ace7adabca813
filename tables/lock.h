// For tables/ only: edits of one table wait for each other, also those of other processes and,
// where the file system passes locks on, of other machines.
//
// The lock is the table file's own: nothing is left lying about, and a process that ends gives it
// back. As an edit puts a new file in the old one's place, whoever has waited looks whether the
// path still leads to the file that it locked, and else tries again with the new one.
#ifndef TABLES_LOCK_H
#define TABLES_LOCK_H

namespace korvel::tables {

class TableLock {
 public:
  TableLock() = default;
  ~TableLock() { release(); }
  TableLock(const TableLock &) = delete;
  TableLock &operator=(const TableLock &) = delete;

  // Waits until no one else edits the table at a POSIX path. Returns false, holding nothing, when
  // it is no regular file that this process may write. Where the file system has no locks, returns
  // true at once.
  bool take(const char *path);

  void release();

 private:
  int file_ = -1;
};

}  // namespace korvel::tables

#endif
