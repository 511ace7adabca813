// SPDX-License-Identifier: MIT
// Every request by its name, and the ways in which it can be refused.
#include "tests/faults/requests.h"

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

namespace korvel::faults {
namespace {

using Ways = std::initializer_list<int>;

constexpr const char *kMemory = "memory";

// The fault that waits for its request, or has met it.
struct State {
  bool isArmed = false;
  bool countsMemoryOnly = false;
  int left = 0;
  int way = 0;
  Lasting lasting = Lasting::Once;
  const char *call = nullptr;  // that was met
  int error = 0;               // 0: it cannot be refused in this way
};
constinit State state;
constinit int outside = 0;

struct Hook {
  const char *call;
  Instead::Act act;
};
constinit std::vector<Hook> hooks;

bool isOfToolkit(const void *caller) {
  Dl_info info{};
  if (dladdr(caller, &info) == 0) return false;
  const auto has = [&](const char *part) { return std::strstr(info.dli_fname, part) != nullptr; };
  return has("/libQt6") || has("/plugins/");
}

bool is(const char *name, const char *other) { return std::strcmp(name, other) == 0; }

// How the fault has this request fail; 0: not at all.
int struck(const char *call, Ways ways) {
  if (!state.isArmed || outside != 0) return 0;
  if (state.countsMemoryOnly && !is(call, kMemory)) return 0;
  if (state.call == nullptr) {
    if (--state.left > 0) return 0;
    if (state.lasting == Lasting::Deadly) std::raise(SIGKILL);
    state.call = call;
    const auto way = static_cast<std::size_t>(state.way);
    state.error = way < ways.size() ? ways.begin()[way] : 0;
    return state.error;
  }
  return state.lasting == Lasting::ForGood && is(state.call, call) && state.error != EINTR
             ? state.error
             : 0;
}

Request requestOf(int file) { return {file, ""}; }
Request requestOf(const char *path) { return {-1, path}; }
Request requestOf(int folder, const char *path) { return {folder, path}; }

// A test's own answer comes before the fault's.
int refusal(const char *call, Ways ways, const Request &request) {
  if (outside == 0) {
    for (const Hook &hook : hooks) {
      if (!is(hook.call, call)) continue;
      ++outside;
      const int error = hook.act(request);
      --outside;
      if (error != 0) return error;
    }
  }
  return struck(call, ways);
}

template <typename Real>
auto answered(const char *call, Ways ways, const Request &request, Real real) -> decltype(real()) {
  using Result = decltype(real());
  const int error = refusal(call, ways, request);
  if (error == 0) return real();
  errno = error;
  if constexpr (std::is_pointer_v<Result>)
    return nullptr;
  else
    return -1;
}

// A call that gives the error number itself.
template <typename Real>
int spawned(const char *call, Real real) {
  const int error = refusal(call, {ENOMEM}, {});
  return error != 0 ? error : real();
}

// A call that is over whatever it answers.
template <typename Real>
int doneAnyhow(const char *call, Ways ways, const Request &request, Real real) {
  const int error = refusal(call, ways, request);
  const int result = error == EINTR && is(call, "waitpid") ? 0 : static_cast<int>(real());
  if (error == 0) return result;
  errno = error;
  return -1;
}

template <typename Real>
ssize_t transferred(const char *call, Ways ways, int file, size_t count, Real real) {
  const int error = refusal(call, ways, requestOf(file));
  if (error == 0) return real(count);
  if (error == kShort) return real(count - count / 2);
  errno = error;
  return -1;
}

#define READING \
  { EIO, EINTR, kShort }
#define WRITING \
  { ENOSPC, EIO, EINTR, kShort }

}  // namespace

Refusal::Refusal(int nth, int way, Lasting lasting) {
  state = {true, false, nth, way, lasting, nullptr, 0};
}
void Refusal::end() { state.isArmed = false; }
bool Refusal::isMet() const { return state.call != nullptr; }
bool Refusal::hasWay() const { return state.error != 0; }
bool Refusal::isHarmless() const { return state.error == EINTR || state.error == kShort; }
std::string_view Refusal::call() const { return state.call; }
std::string Refusal::description() const {
  return std::string(state.call) + ": " +
         (state.error == kShort ? "short" : strerrorname_np(state.error)) +
         (state.lasting == Lasting::ForGood ? " for good" : "");
}

FailingMemory::FailingMemory(int n) { state = {true, true, n, 0, Lasting::Once, nullptr, 0}; }
FailingMemory::~FailingMemory() { state.isArmed = false; }
bool FailingMemory::hasFailed() const { return state.call != nullptr; }

Instead::Instead(const char *call, Act act) { hooks.push_back({call, std::move(act)}); }
Instead::~Instead() { hooks.pop_back(); }

InLibrary::InLibrary(bool is) : before_(std::exchange(outside, is ? 0 : 1)) {}
InLibrary::~InLibrary() { outside = before_; }

namespace {

bool failsToAllocate(const void *caller) {
  if (outside != 0 || (!state.isArmed && hooks.empty()) || isOfToolkit(caller)) return false;
  return refusal(kMemory, {ENOMEM}, {}) != 0;
}

}  // namespace
}  // namespace korvel::faults

using namespace korvel::faults;

extern "C" [[gnu::no_instrument_function]] void __cyg_profile_func_enter(void *, void *);
extern "C" [[gnu::no_instrument_function]] void __cyg_profile_func_exit(void *, void *);
void __cyg_profile_func_enter(void *, void *) { ++outside; }
void __cyg_profile_func_exit(void *, void *) { --outside; }

// ---- The system ----

// Functions that fail with -1 and an error number, or with a null pointer.
#define FAULTY(Result, name, parameters, request, arguments, ...)         \
  extern "C" Result __real_##name parameters;                             \
  extern "C" Result __wrap_##name parameters;                             \
  Result __wrap_##name parameters {                                       \
    return answered(#name, {__VA_ARGS__}, request,                        \
                    [&]() -> Result { return __real_##name arguments; }); \
  }

using Status = struct stat;

FAULTY(int, access, (const char *path, int mode), requestOf(path), (path, mode), EACCES)
FAULTY(int, chmod, (const char *path, mode_t mode), requestOf(path), (path, mode), EPERM)
FAULTY(void *, dlopen, (const char *path, int mode), requestOf(path), (path, mode), ENOMEM)
FAULTY(void *, dlsym, (void *library, const char *name), {}, (library, name), ENOMEM)
FAULTY(int, faccessat, (int folder, const char *path, int mode, int flags), requestOf(folder, path),
       (folder, path, mode, flags), EACCES, EIO)
FAULTY(int, fchmod, (int file, mode_t mode), requestOf(file), (file, mode), EPERM, EIO)
FAULTY(int, fchown, (int file, uid_t user, gid_t group), requestOf(file), (file, user, group),
       EPERM)
FAULTY(DIR *, fdopendir, (int folder), requestOf(folder), (folder), ENOMEM)
FAULTY(ssize_t, fgetxattr, (int file, const char *name, void *value, size_t size), requestOf(file),
       (file, name, value, size), EIO)
FAULTY(ssize_t, flistxattr, (int file, char *names, size_t size), requestOf(file),
       (file, names, size), ENOTSUP, EIO)
FAULTY(int, flock, (int file, int operation), requestOf(file), (file, operation), EWOULDBLOCK,
       ENOLCK, EINTR)
FAULTY(int, fremovexattr, (int file, const char *name), requestOf(file), (file, name), EIO)
FAULTY(int, fsetxattr, (int file, const char *name, const void *value, size_t size, int flags),
       requestOf(file), (file, name, value, size, flags), ENOSPC)
FAULTY(int, fstat, (int file, Status *status), requestOf(file), (file, status), EIO)
FAULTY(int, fstatat, (int folder, const char *path, Status *status, int flags),
       requestOf(folder, path), (folder, path, status, flags), EIO, ENOENT)
FAULTY(int, fsync, (int file), requestOf(file), (file), EIO, ENOSPC, EDQUOT, EINTR)
FAULTY(int, ftruncate, (int file, off_t length), requestOf(file), (file, length), EIO, EINTR)
FAULTY(int, linkat, (int folder, const char *path, int newFolder, const char *newPath, int flags),
       requestOf(folder, path), (folder, path, newFolder, newPath, flags), EIO, ENOSPC, EPERM)
FAULTY(off_t, lseek, (int file, off_t offset, int from), requestOf(file), (file, offset, from),
       EINVAL)
FAULTY(int, lstat, (const char *path, Status *status), requestOf(path), (path, status), EIO, EACCES)
FAULTY(int, memfd_create, (const char *name, unsigned flags), {}, (name, flags), EMFILE)
FAULTY(int, mkdir, (const char *path, mode_t mode), requestOf(path), (path, mode), EACCES, ENOSPC)
FAULTY(int, pipe2, (int *ends, int flags), {}, (ends, flags), EMFILE)
FAULTY(int, poll, (pollfd * files, nfds_t count, int timeout), {}, (files, count, timeout), ENOMEM,
       EINTR)
FAULTY(dirent *, readdir, (DIR * folder), {}, (folder), EIO, EINTR)
FAULTY(ssize_t, readlink, (const char *path, char *target, size_t size), requestOf(path),
       (path, target, size), EIO)
FAULTY(char *, realpath, (const char *path, char *real), requestOf(path), (path, real), EIO)
FAULTY(char *, __realpath_chk, (const char *path, char *real, size_t size), requestOf(path),
       (path, real, size), EIO)
FAULTY(int, remove, (const char *path), requestOf(path), (path), EIO)
FAULTY(int, rename, (const char *path, const char *newPath), requestOf(path), (path, newPath), EIO,
       ENOSPC)
FAULTY(int, renameat, (int folder, const char *path, int newFolder, const char *newPath),
       requestOf(folder, path), (folder, path, newFolder, newPath), EIO, ENOSPC, EACCES)
FAULTY(int, renameat2,
       (int folder, const char *path, int newFolder, const char *newPath, unsigned flags),
       requestOf(folder, path), (folder, path, newFolder, newPath, flags), EIO, ENOSPC, EINVAL)
FAULTY(int, sigtimedwait, (const sigset_t *set, siginfo_t *info, const timespec *patience), {},
       (set, info, patience), EAGAIN)
FAULTY(int, stat, (const char *path, Status *status), requestOf(path), (path, status), EIO, EACCES)
FAULTY(int, syncfs, (int file), requestOf(file), (file), EIO)
FAULTY(int, unlink, (const char *path), requestOf(path), (path), EIO)
FAULTY(int, unlinkat, (int folder, const char *path, int flags), requestOf(folder, path),
       (folder, path, flags), EIO)

// Openings, with their optional mode.
#define OPENING EACCES, EIO, EMFILE, EINTR

// As the compiler calls them where it cannot tell whether there is a mode.
extern "C" int __real___open_2(const char *path, int flags);
extern "C" int __wrap___open_2(const char *path, int flags);
int __wrap___open_2(const char *path, int flags) {
  return answered("open", {OPENING}, requestOf(path), [&] { return __real___open_2(path, flags); });
}

extern "C" int __real___openat_2(int folder, const char *path, int flags);
extern "C" int __wrap___openat_2(int folder, const char *path, int flags);
int __wrap___openat_2(int folder, const char *path, int flags) {
  return answered("openat", {OPENING}, requestOf(folder, path),
                  [&] { return __real___openat_2(folder, path, flags); });
}

namespace {

mode_t modeOf(int flags, std::va_list rest) {
  const bool creates = (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
  return creates ? va_arg(rest, mode_t) : 0;
}

}  // namespace

extern "C" int __real_open(const char *path, int flags, ...);
extern "C" int __wrap_open(const char *path, int flags, ...);
int __wrap_open(const char *path, int flags, ...) {
  std::va_list rest;
  va_start(rest, flags);
  const mode_t mode = modeOf(flags, rest);
  va_end(rest);
  return answered("open", {OPENING}, requestOf(path),
                  [&] { return __real_open(path, flags, mode); });
}

extern "C" int __real_openat(int folder, const char *path, int flags, ...);
extern "C" int __wrap_openat(int folder, const char *path, int flags, ...);
int __wrap_openat(int folder, const char *path, int flags, ...) {
  std::va_list rest;
  va_start(rest, flags);
  const mode_t mode = modeOf(flags, rest);
  va_end(rest);
  return answered("openat", {OPENING}, requestOf(folder, path),
                  [&] { return __real_openat(folder, path, flags, mode); });
}

// Only the settings of an open file are asked for.
extern "C" int __real_fcntl(int file, int command, ...);
extern "C" int __wrap_fcntl(int file, int command, ...);
int __wrap_fcntl(int file, int command, ...) {
  std::va_list rest;
  va_start(rest, command);
  const int argument = command == F_SETFL ? va_arg(rest, int) : 0;
  va_end(rest);
  return answered("fcntl", {EIO}, requestOf(file),
                  [&] { return __real_fcntl(file, command, argument); });
}

// The file is closed, the child is collected.
#define DONE_ANYHOW(Result, name, parameters, request, arguments, ...)                         \
  extern "C" Result __real_##name parameters;                                                  \
  extern "C" Result __wrap_##name parameters;                                                  \
  Result __wrap_##name parameters {                                                            \
    return doneAnyhow(#name, {__VA_ARGS__}, request, [&] { return __real_##name arguments; }); \
  }

DONE_ANYHOW(int, close, (int file), requestOf(file), (file), EIO, EINTR)
DONE_ANYHOW(int, closedir, (DIR * folder), {}, (folder), EIO, EINTR)
DONE_ANYHOW(pid_t, waitpid, (pid_t process, int *status, int flags), {}, (process, status, flags),
            ECHILD, EINTR)

// Functions that move bytes.
#define TRANSFER(name, parameters, arguments, ...)                            \
  extern "C" ssize_t __real_##name parameters;                                \
  extern "C" ssize_t __wrap_##name parameters;                                \
  ssize_t __wrap_##name parameters {                                          \
    return transferred(#name, __VA_ARGS__, file, count,                       \
                       [&](size_t part) { return __real_##name arguments; }); \
  }

TRANSFER(read, (int file, void *to, size_t count), (file, to, part), READING)
TRANSFER(pread, (int file, void *to, size_t count, off_t offset), (file, to, part, offset), READING)
TRANSFER(write, (int file, const void *from, size_t count), (file, from, part), WRITING)
TRANSFER(pwrite, (int file, const void *from, size_t count, off_t offset),
         (file, from, part, offset), WRITING)

// A short one writes half of the first piece.
extern "C" ssize_t __real_writev(int file, const iovec *pieces, int count);
extern "C" ssize_t __wrap_writev(int file, const iovec *pieces, int count);
ssize_t __wrap_writev(int file, const iovec *pieces, int count) {
  const size_t first = count > 0 ? pieces[0].iov_len : 0;
  return transferred("writev", WRITING, file, first, [&](size_t part) {
    if (part == first) return __real_writev(file, pieces, count);
    const iovec piece = {pieces[0].iov_base, part};
    return __real_writev(file, &piece, 1);
  });
}

// What starts a process.
#define SPAWNING(name, parameters, arguments)                       \
  extern "C" int __real_##name parameters;                          \
  extern "C" int __wrap_##name parameters;                          \
  int __wrap_##name parameters {                                    \
    return spawned(#name, [&] { return __real_##name arguments; }); \
  }

SPAWNING(posix_spawn,
         (pid_t * process, const char *path, const posix_spawn_file_actions_t *actions,
          const posix_spawnattr_t *attributes, char *const *arguments, char *const *environment),
         (process, path, actions, attributes, arguments, environment))
SPAWNING(posix_spawn_file_actions_init, (posix_spawn_file_actions_t * actions), (actions))
SPAWNING(posix_spawn_file_actions_adddup2, (posix_spawn_file_actions_t * actions, int from, int to),
         (actions, from, to))
SPAWNING(posix_spawnattr_init, (posix_spawnattr_t * attributes), (attributes))

// Nobody is waited for here.
extern "C" int __wrap_usleep(useconds_t);
int __wrap_usleep(useconds_t) { return 0; }

// ---- Memory ----

FAULTY(void *, malloc, (size_t size), {}, (size), ENOMEM)
FAULTY(void *, calloc, (size_t count, size_t size), {}, (count, size), ENOMEM)
FAULTY(void *, realloc, (void *block, size_t size), {}, (block, size), ENOMEM)

namespace {

void *allocateOrNull(std::size_t size, const void *caller) {
  return failsToAllocate(caller) ? nullptr : __real_malloc(size == 0 ? 1 : size);
}

void *allocate(std::size_t size, const void *caller) {
  if (void *block = allocateOrNull(size, caller)) return block;
  throw std::bad_alloc();
}

}  // namespace

void *operator new(std::size_t size) { return allocate(size, __builtin_return_address(0)); }
void *operator new[](std::size_t size) { return allocate(size, __builtin_return_address(0)); }
void *operator new(std::size_t size, const std::nothrow_t &) noexcept {
  return allocateOrNull(size, __builtin_return_address(0));
}
void *operator new[](std::size_t size, const std::nothrow_t &) noexcept {
  return allocateOrNull(size, __builtin_return_address(0));
}
void operator delete(void *block) noexcept { std::free(block); }
void operator delete[](void *block) noexcept { std::free(block); }
// The language does not declare these two for every compiler, which then would hide them from what
// other libraries give back.
[[gnu::visibility("default")]] void operator delete(void *block, std::size_t) noexcept {
  std::free(block);
}
[[gnu::visibility("default")]] void operator delete[](void *block, std::size_t) noexcept {
  std::free(block);
}
