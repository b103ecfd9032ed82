# Sourced by ./run, ./test and the scripts of tools/: where the tree is, what it needs, how it builds.
# shellcheck shell=bash

KXUI_ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
export CCACHE_BASEDIR="$KXUI_ROOT"
export CCACHE_NOHASHDIR=1
export CCACHE_SLOPPINESS=pch_defines,time_macros # or it keeps nothing where headers are precompiled
cd "$KXUI_ROOT" || exit 1

KXUI_PACKAGES_BUILD=(
  g++ cmake ninja-build ccache pkg-config
  qtbase5-dev libboost-dev libboost-regex-dev libhwy-dev libopenimageio-dev
  libopenexr-dev libspng-dev libdeflate-dev
  qttools5-dev qttools5-dev-tools fonts-dejavu-core)
KXUI_PACKAGES_TEST=(
  git clang-format libgsl-dev libmuparser-dev libfuse3-dev xvfb openbox xdotool
  x11-utils imagemagick chromium)
KXUI_PACKAGES_QT6=(qt6-base-dev qt6-tools-dev qt6-tools-dev-tools qt6-l10n-tools libgl-dev)
KXUI_PACKAGES_DOCS=(doxygen)
KXUI_PACKAGES_FUZZ=(clang-14 libclang-rt-14-dev llvm-14 libmuparser-dev)
KXUI_PACKAGES_WINDOWS=(
  g++-mingw-w64-x86-64-posix cmake ninja-build ccache libboost-dev wine64 locales)
KXUI_PACKAGES_COVERAGE=(gcovr)
KXUI_PACKAGES_ABI=(abigail-tools xz-utils)
KXUI_PACKAGES_SHIP=(dpkg-dev lintian debootstrap doxygen)
KXUI_PACKAGES_BENCH=(
  libbenchmark-dev libltc-dev libavfilter-dev libavutil-dev libswscale-dev libyuv-dev libgsl-dev
  libmuparser-dev libqcustomplot-dev libqwt-qt5-dev libqt-color-widgets-dev
  ffmpeg liblttng-ust-dev lttng-tools libqt-advanced-docking-system-dev
  libkf5widgetsaddons-dev kde-style-breeze adwaita-qt nginx-light apache2-utils python3)

if [[ -t 2 ]]; then
  say() { printf '\033[1m%s\033[0m\n' "$*" >&2; }
else
  say() { printf '%s\n' "$*" >&2; }
fi
fail() { printf '%s: %s\n' "$(basename "$0")" "$*" >&2; exit 1; }

# Qt wants a private run-time folder and warns where the login made none.
runtime_dir() {
  [[ -z ${XDG_RUNTIME_DIR-} ]] || return 0
  export XDG_RUNTIME_DIR=$KXUI_ROOT/build/runtime
  mkdir -p "$XDG_RUNTIME_DIR"
  chmod 700 "$XDG_RUNTIME_DIR"
}

# need PACKAGE...: installs by apt what is missing; nothing is asked of the network otherwise.
need() {
  local package missing=()
  local -A installed=()
  while read -r package; do installed[$package]=1; done < <(
    dpkg-query -W -f '${db:Status-Abbrev} ${Package}\n' "$@" 2>/dev/null | sed -n 's/^ii  *//p')
  for package in "$@"; do
    [[ -n ${installed[$package]-} ]] || missing+=("$package")
  done
  ((${#missing[@]})) || return 0
  local as_root=()
  if ((EUID != 0)); then
    command -v sudo >/dev/null || fail "these packages are missing and need root to install: ${missing[*]}"
    as_root=(sudo)
  fi
  say "installing ${missing[*]}"
  local log
  log=$(mktemp)
  if ! { "${as_root[@]}" apt-get update -q &&
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
      apt-get install -q -y --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
    tail -n 30 "$log" >&2
    fail "apt could not install ${missing[*]} (whole output: $log)"
  fi
  rm -f "$log"
}

# configure PRESET [-DOPTION=VALUE]: one build folder a preset. Does nothing where that was done
# already (ninja runs cmake again by itself when a CMakeLists.txt changes).
configure() {
  local preset=$1 folder=build/$1 log
  shift
  if [[ -f $folder/build.ninja ]] && grep -qx "CMAKE_HOME_DIRECTORY:INTERNAL=$KXUI_ROOT" "$folder/CMakeCache.txt"; then
    local option known=1
    for option in "$@"; do
      grep -q "^${option#-D}" <(sed 's/:[A-Z]*=/=/' "$folder/CMakeCache.txt") || known=
    done
    [[ $known ]] && return 0
  fi
  say "configuring build/$preset"
  mkdir -p "$folder"
  log=$folder/configure.log
  if ! cmake --preset "$preset" "$@" >"$log" 2>&1; then
    cat "$log" >&2
    fail "cmake could not configure $preset"
  fi
}

# build PRESET [TARGET...]: quiet when all is well.
build() {
  local preset=$1 targets=() log
  shift
  (($#)) && targets=(--target "$@")
  log=build/$preset/build.log
  say "building build/$preset${*:+: $*}"
  if ! cmake --build "build/$preset" "${targets[@]}" >"$log" 2>&1; then
    grep -vE '^\[[0-9]+/[0-9]+\] (Building|Linking|Automatic|Creating|Generating)' "$log" | head -n 80 >&2
    fail "build/$preset does not build (whole output: build/$preset/build.log)"
  fi
}
