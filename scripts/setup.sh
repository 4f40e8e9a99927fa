#!/usr/bin/env bash
# Brings a Debian machine to a state where every preset builds and every test runs.
# Idempotent: each step checks first and does nothing when its result is already there.
set -euo pipefail

here=$(cd "$(dirname "$0")/.." && pwd)
cache=${MIVO_DEPS_CACHE:-$HOME/.cache/mivo-deps}
jobs=$(nproc)
log() { printf '[setup] %s\n' "$*"; }

sudo_if_needed() { if [ "$(id -u)" = 0 ]; then "$@"; else sudo "$@"; fi; }

packages=(
  build-essential cmake ninja-build pkg-config dpkg-dev clang-format
  g++-mingw-w64-x86-64-posix gcc-mingw-w64-x86-64-posix binutils-mingw-w64-x86-64
  wine wine64 xvfb xauth
  imagemagick fonts-wqy-microhei
  libtinyxml-dev libjsoncpp-dev libssl-dev libgtest-dev libgmock-dev libbenchmark-dev libspdlog-dev
  libgsf-1-dev
  libhyperscan-dev libuv1-dev
  libicu-dev
  clang libclang-rt-14-dev
)

install_packages() {
  local missing=()
  for p in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
  done
  if [ ${#missing[@]} -gt 0 ]; then
    log "installing ${missing[*]}"
    sudo_if_needed apt-get update -qq
    sudo_if_needed env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
  fi
}

# Source packages need deb-src lines; derive them from the machine's own deb entries.
enable_sources() {
  if apt-get source --print-uris tinyxml >/dev/null 2>&1; then return; fi
  log "adding deb-src entries derived from the machine's apt sources"
  if [ -f /etc/apt/sources.list.d/debian.sources ]; then
    sed 's/^Types: deb$/Types: deb-src/' /etc/apt/sources.list.d/debian.sources |
      sudo_if_needed tee /etc/apt/sources.list.d/mivo-src.sources >/dev/null
  elif [ -f /etc/apt/sources.list ]; then
    grep -E '^deb ' /etc/apt/sources.list | sed 's/^deb /deb-src /' |
      sudo_if_needed tee /etc/apt/sources.list.d/mivo-src.list >/dev/null
  fi
  sudo_if_needed apt-get update -qq
}

# The versions of a source package that the registry offers, newest first.
src_versions() { apt-cache showsrc "$1" 2>/dev/null | awk '/^Version:/{print $2}' | sort -Vr | uniq; }

# dep_version NAME PKG: the version to use. A version already built in the cache wins (so a
# second run needs no network); otherwise the newest whose source the registry really serves
# (a security pocket can list a version it no longer has).
dep_version() {
  local name=$1 pkg=$2 v
  for v in $(src_versions "$pkg"); do
    [ -f "$cache/win64/$name-$v/.done" ] && { echo "$v"; return; }
  done
  for v in $(src_versions "$pkg"); do
    fetch_source "$pkg" "$v" >/dev/null 2>&1 && { echo "$v"; return; }
  done
  echo "no source of $pkg could be fetched" >&2; return 1
}

# fetch_source PKG VERSION -> prints the unpacked folder
fetch_source() {
  local pkg=$1 ver=$2 work="$cache/src/$1-$2"
  if [ ! -f "$work/.unpacked" ] || [ -z "$(find "$work" -mindepth 1 -maxdepth 1 -type d)" ]; then
    rm -rf "$work"; mkdir -p "$work"
    (cd "$work" && apt-get source -qq "$pkg=$ver" >/dev/null 2>&1) || { rm -rf "$work"; return 1; }
    touch "$work/.unpacked"
  fi
  find "$work" -mindepth 1 -maxdepth 1 -type d | head -1
}

toolchain="$here/cmake/mingw-w64-x86_64.cmake"

build_tinyxml() {
  local ver; ver=$(dep_version tinyxml tinyxml); local out="$cache/win64/tinyxml-$ver"
  [ -f "$out/.done" ] && return
  log "building TinyXML $ver for Windows"
  local src; src=$(fetch_source tinyxml "$ver")
  rm -rf "$out"; mkdir -p "$out/include" "$out/lib" "$out/obj"
  for f in tinyxml tinystr tinyxmlerror tinyxmlparser; do
    x86_64-w64-mingw32-g++-posix -O2 -DTIXML_USE_STL -c "$src/$f.cpp" -o "$out/obj/$f.o"
  done
  x86_64-w64-mingw32-ar rcs "$out/lib/libtinyxml.a" "$out"/obj/*.o
  cp "$src/tinyxml.h" "$src/tinystr.h" "$out/include/"
  # the installed header must always mean the STL build, as Debian's does
  sed -i '0,/^#include/s//#ifndef TIXML_USE_STL\n#define TIXML_USE_STL\n#endif\n#include/' "$out/include/tinyxml.h"
  rm -rf "$out/obj"; touch "$out/.done"
}

build_cmake_dep() { # name ver srcdir extra-cmake-args...
  local name=$1 ver=$2 src=$3; shift 3; local out="$cache/win64/$name-$ver"
  rm -rf "$out" "$cache/build/$name"
  cmake -S "$src" -B "$cache/build/$name" -G Ninja -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_TOOLCHAIN_FILE="$toolchain" -DCMAKE_INSTALL_PREFIX="$out" "$@" >/dev/null
  cmake --build "$cache/build/$name" -j "$jobs" >/dev/null
  cmake --install "$cache/build/$name" >/dev/null
  rm -rf "$cache/build/$name"; touch "$out/.done"
}

build_jsoncpp() {
  local ver; ver=$(dep_version jsoncpp libjsoncpp); [ -f "$cache/win64/jsoncpp-$ver/.done" ] && return
  log "building jsoncpp $ver for Windows"
  local src; src=$(fetch_source libjsoncpp "$ver")
  build_cmake_dep jsoncpp "$ver" "$src" -DBUILD_SHARED_LIBS=OFF -DBUILD_STATIC_LIBS=ON \
    -DBUILD_OBJECT_LIBS=OFF -DJSONCPP_WITH_TESTS=OFF -DJSONCPP_WITH_POST_BUILD_UNITTEST=OFF \
    -DJSONCPP_WITH_PKGCONFIG_SUPPORT=OFF -DJSONCPP_WITH_CMAKE_PACKAGE=ON
}

build_googletest() {
  local ver; ver=$(dep_version googletest googletest); [ -f "$cache/win64/googletest-$ver/.done" ] && return
  log "building GoogleTest $ver for Windows"
  local src; src=$(fetch_source googletest "$ver")
  build_cmake_dep googletest "$ver" "$src" -Dgtest_disable_pthreads=OFF -DBUILD_GMOCK=ON
}

build_openssl() {
  local ver; ver=$(dep_version openssl openssl); local out="$cache/win64/openssl-$ver"
  [ -f "$out/.done" ] && return
  log "building OpenSSL $ver libcrypto for Windows (legacy provider built in)"
  local src; src=$(fetch_source openssl "$ver")
  local b="$cache/build/openssl"; rm -rf "$b" "$out"; cp -a "$src" "$b"
  # no-module puts the legacy provider inside the static libcrypto
  (cd "$b" && ./Configure mingw64 no-shared no-module no-tests no-asm \
      --cross-compile-prefix=x86_64-w64-mingw32- --prefix="$out" --libdir=lib >/dev/null &&
   make -s -j "$jobs" build_libs >/dev/null 2>&1)
  mkdir -p "$out/lib" "$out/include"
  cp "$b/libcrypto.a" "$out/lib/"
  cp -r "$b/include/openssl" "$out/include/"
  rm -rf "$b"; touch "$out/.done"
}

# Points the windows preset at the cache; read by CMakePresets through the environment.
write_env() {
  local f="$cache/win64/deps.env"
  {
    echo "MIVO_WIN_TINYXML=$cache/win64/tinyxml-$(dep_version tinyxml tinyxml)"
    echo "MIVO_WIN_JSONCPP=$cache/win64/jsoncpp-$(dep_version jsoncpp libjsoncpp)"
    echo "MIVO_WIN_OPENSSL=$cache/win64/openssl-$(dep_version openssl openssl)"
    echo "MIVO_WIN_GTEST=$cache/win64/googletest-$(dep_version googletest googletest)"
  } > "$f.tmp" && mv "$f.tmp" "$f"
}

install_packages
enable_sources
mkdir -p "$cache/win64"
build_tinyxml
build_jsoncpp
build_googletest
build_openssl
write_env
log "ready (dependency cache: $cache/win64)"
