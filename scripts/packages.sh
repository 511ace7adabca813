# SPDX-License-Identifier: MIT
# shellcheck shell=bash disable=SC2034
# Sourced by the scripts: the Debian packages each of them needs, asked for only when one is
# missing.

readonly BUILD_PACKAGES=(
  build-essential cmake ninja-build qt6-base-dev qt6-tools-dev libqt6opengl6-dev
  libqt6svg6 libqt6uitools6 libsqlite3-dev pkg-config
)
# The tools that the library runs beside those of every system.
readonly TOOL_PACKAGES=(
  procps xdg-utils
)
readonly SCREEN_PACKAGES=(
  xvfb x11-utils openbox xdotool xclip imagemagick fonts-liberation
)
# What shows the library's dialogs on Wayland, and a compositor without a screen of its own.
readonly WAYLAND_PACKAGES=(
  qt6-wayland
)
readonly COMPOSITOR_PACKAGES=(
  "${WAYLAND_PACKAGES[@]}" fonts-liberation grim python3 sway wl-clipboard wtype
)
# What makes Debian packages, and looks at them.
readonly PACKAGING_PACKAGES=(
  debhelper doxygen git lintian python3
)
# What fills a tree with the smallest system.
readonly BARE_PACKAGES=(
  debootstrap git procps
)
readonly TEST_PACKAGES=(
  "${BUILD_PACKAGES[@]}" "${TOOL_PACKAGES[@]}" "${SCREEN_PACKAGES[@]}" "${COMPOSITOR_PACKAGES[@]}"
  "${PACKAGING_PACKAGES[@]}" "${BARE_PACKAGES[@]}"
  clang clang-format clang-tidy libclang-rt-14-dev googletest libgtest-dev locales
  at-spi2-core dbus libatspi2.0-dev e2fsprogs groff-base libcrypt-dev sudo valgrind xfsprogs
  fontconfig fonts-dejavu-core fonts-noto-core fonts-urw-base35 poppler-utils
  abigail-tools  # compares the interface with its record
  llvm           # names functions in what the sanitizers report
  hunspell hunspell-en-gb
)
# A compiler for another machine, and what runs its programs.
readonly CROSS_PACKAGES=(
  g++-aarch64-linux-gnu qemu-user
)
readonly BENCH_PACKAGES=(
  "${BUILD_PACKAGES[@]}" libbenchmark-dev libglib2.0-dev libinih-dev mawk
  fonts-liberation
)

# Who runs a folder's scripts trusts the folder. In a container, where root works on somebody else's
# checkout, git would ask.
export GIT_CONFIG_COUNT=1 GIT_CONFIG_KEY_0=safe.directory GIT_CONFIG_VALUE_0
GIT_CONFIG_VALUE_0=$(pwd -P)

say() { printf '%s: %s\n' "${0##*/}" "$*"; }
fail() { say "$*" >&2; exit 1; }

# True when sudo works without a password, or can ask somebody for one.
may_use_sudo() {
  command -v sudo >/dev/null && { sudo -n true 2>/dev/null || [ -t 0 ]; }
}

# Whether a package is installed, if only for one of several architectures.
is_installed() {
  [[ " $(dpkg-query -W -f='${db:Status-Status} ' "$1" 2>/dev/null)" == *' installed '* ]]
}

# Installs those of the packages given that are not installed; as root or through sudo.
ensure_packages() {
  local package missing=()
  for package in "$@"; do
    [[ " ${missing[*]} " == *" $package "* ]] || is_installed "$package" || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return
  local as_root=() please="please have them installed: apt-get install ${missing[*]}"
  if [ "$(id -u)" -ne 0 ]; then
    may_use_sudo || fail "packages are missing; $please"
    as_root=(sudo)
  fi
  say "installing ${missing[*]}"
  { "${as_root[@]}" apt-get update -q >/dev/null &&
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
      apt-get install -q -y --no-install-recommends "${missing[@]}" >/dev/null; } ||
    fail "packages could not be installed; $please"
}

# new_folder <path>: a folder for one run, whose path begins with that one. Those of runs that were
# killed more than a day ago go.
new_folder() {
  find "${1%/*}" -maxdepth 1 -name "${1##*/}.??????" -ctime +0 \
    -exec rm -rf --one-file-system {} +
  mktemp -d "$1.XXXXXX"
}

# Configures a preset; from nothing where its folder was made with another compiler.
configure() {
  local fresh=()
  [ "$1" != asan ] || grep -qs '^CMAKE_CXX_COMPILER:.*clang' build/asan/CMakeCache.txt ||
    fresh=(--fresh)
  cmake --preset "$1" ${fresh[@]+"${fresh[@]}"} >/dev/null
}
