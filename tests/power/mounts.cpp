// SPDX-License-Identifier: MIT
// The devices are those of a device file system mounted in the folder: a bare tree's /dev may have
// none of them.
#include "tests/power/mounts.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include <fcntl.h>
#include <linux/loop.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <unistd.h>

#include "base/posix.h"

namespace korvel::test {

Image::Image(off_t size) : file_(memfd_create("image", MFD_CLOEXEC)) {
  if (file_ < 0 || ftruncate(file_, size) != 0) std::abort();
}

Image::~Image() { close(file_); }

std::string Image::path() const {
  return "/proc/" + std::to_string(getpid()) + "/fd/" + std::to_string(file_);
}

namespace {

bool run(const std::string &command) {
  const std::string line = "PATH=$PATH:/usr/sbin:/sbin; " + command + " >/dev/null";
  return std::system(line.c_str()) == 0;
}

}  // namespace

bool canFormat(const FileSystem &fileSystem) {
  const std::string_view command = fileSystem.format;
  return run("command -v " + std::string(command.substr(0, command.find(' '))));
}

Sectors formatted(const FileSystem &fileSystem) {
  const Image image(fileSystem.size);
  const bool done = run(std::string(fileSystem.format) + " " + image.path());
  return done ? sectorsOf(image.file()) : Sectors();
}

PrivateMounts::PrivateMounts() {
  const auto needs = [this](bool done, const char *what) {
    if (!done && obstacle_.empty()) obstacle_ = std::string(what) + ": " + std::strerror(errno);
    return obstacle_.empty();
  };
  const std::string folder = folder_.path();
  needs(unshare(CLONE_NEWNS) == 0, "may not have mounts of its own") &&
      needs(mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0,
            "may not keep mounts to itself") &&
      needs(mount("none", folder.c_str(), "tmpfs", 0, nullptr) == 0, "may not mount") &&
      needs(mkdir(path("dev").c_str(), 0700) == 0 &&
                mount("none", path("dev").c_str(), "devtmpfs", 0, nullptr) == 0,
            "may not mount devices") &&
      needs(access(path("dev/loop-control").c_str(), R_OK | W_OK) == 0, "no loop devices") &&
      needs(access(path("dev/fuse").c_str(), R_OK | W_OK) == 0, "no file systems in processes");
}

PrivateMounts::~PrivateMounts() {
  umount2(path("dev").c_str(), MNT_DETACH);
  umount2(folder_.path().c_str(), MNT_DETACH);
}

// Others may take the free device meanwhile.
bool PrivateMounts::attach(int file, int &loop, std::string &device) const {
  const int control = open(path("dev/loop-control").c_str(), O_RDWR | O_CLOEXEC);
  loop_config config = {};
  config.fd = static_cast<__u32>(file);
  config.block_size = sizeof(Sector);
  config.info.lo_flags = LO_FLAGS_AUTOCLEAR;
  bool done = false;
  for (int attempt = 0; control >= 0 && attempt < 100 && !done; ++attempt) {
    const int number = ioctl(control, LOOP_CTL_GET_FREE);
    if (number < 0) break;
    device = path("dev/loop" + std::to_string(number));
    loop = open(device.c_str(), O_RDWR | O_CLOEXEC);
    done = loop >= 0 && ioctl(loop, LOOP_CONFIGURE, &config) == 0;
    if (!done && loop >= 0) close(loop);
  }
  if (control >= 0) close(control);
  return done;
}

bool PrivateMounts::mountFile(int file, const char *type, unsigned long flags, const char *options,
                              const std::string &name) const {
  const std::string at = path(name);
  int loop = -1;
  std::string device;
  if (mkdir(at.c_str(), 0700) != 0 || !attach(file, loop, device)) return false;
  const bool done = mount(device.c_str(), at.c_str(), type, flags, options) == 0;
  const int error = errno;
  close(loop);
  errno = error;
  return done;
}

bool PrivateMounts::unmount(const std::string &name) const {
  const std::string at = path(name);
  const bool done = umount2(at.c_str(), 0) == 0;
  if (!done) umount2(at.c_str(), MNT_DETACH);
  rmdir(at.c_str());
  return done;
}

}  // namespace korvel::test
