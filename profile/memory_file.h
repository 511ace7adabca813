// SPDX-License-Identifier: MIT
// For profile/: a file to read, and a memory file for the time of a call.
#ifndef KORVEL_PROFILE_MEMORY_FILE_H
#define KORVEL_PROFILE_MEMORY_FILE_H

#include <string_view>

#include <sys/types.h>

namespace korvel::profile {

// A file open for reading.
class InputFile {
 public:
  InputFile() = default;
  ~InputFile();
  InputFile(const InputFile &) = delete;
  InputFile &operator=(const InputFile &) = delete;

  // Opens the file at a colon path. False when there is no regular file, or when it may not be
  // read.
  bool open(const char *path);

  int descriptor() const { return descriptor_; }
  off_t size() const { return size_; }

 private:
  int descriptor_ = -1;
  off_t size_ = 0;
};

// One of the memory files that the application has too, closed with its object.
class MemoryFile {
 public:
  // Room for `size` bytes, and more as they come.
  explicit MemoryFile(off_t size);
  ~MemoryFile();
  MemoryFile(const MemoryFile &) = delete;
  MemoryFile &operator=(const MemoryFile &) = delete;

  // False when no memory file was free or there was no memory for it. Nothing else may be called
  // then.
  bool isOpen() const { return handle_ >= 0; }
  // True when it is memory that was missing.
  bool isWithoutMemory() const { return isWithoutMemory_; }

  // Loads the whole content of an open file of about this size into an empty memory file. False
  // when it does not fit into memory or cannot be read.
  bool load(int descriptor, off_t size);

  // Appends; false when there is no memory.
  bool append(std::string_view piece);
  void clear();

  std::string_view bytes() const;

 private:
  int handle_;
  bool isWithoutMemory_;
};

}  // namespace korvel::profile

#endif
