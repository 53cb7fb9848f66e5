# Sourced by the entry scripts: installs what a Debian machine lacks.
# shellcheck shell=bash

# So that a second clone on the same machine finds what the first has compiled.
export CCACHE_BASEDIR=${root:-} CCACHE_NOHASHDIR=1

packages_build=(g++ cmake ninja-build ccache libsndfile1-dev libcli11-dev nlohmann-json3-dev)
packages_test=(libgtest-dev libgmock-dev binutils)
packages_check=(clang clang-format clang-tidy chromium)

# need_packages NAME…: returns at once when all of them are there.
need_packages() {
  local missing=() name
  for name in "$@"; do
    [[ $(dpkg-query -W -f='${Status}' "$name" 2>/dev/null) == *" installed" ]] || missing+=("$name")
  done
  ((${#missing[@]} == 0)) && return 0
  if ! command -v apt-get >/dev/null; then
    echo "These Debian packages, or what your system has in their place, must be installed first:" >&2
    echo "  ${missing[*]}" >&2
    return 1
  fi
  local as_root=()
  if ((EUID != 0)); then
    if ! command -v sudo >/dev/null; then
      echo "Some packages are missing and this is neither root nor is there sudo. As root, run:" >&2
      echo "  apt-get update && apt-get install ${missing[*]}" >&2
      return 1
    fi
    as_root=(sudo)
  fi
  echo "Installing ${missing[*]} ..." >&2
  "${as_root[@]}" apt-get update -qq >&2 &&
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
      "${missing[@]}" >/dev/null || {
    echo "The packages could not be installed: ${missing[*]}" >&2
    return 1
  }
}

# configure_once PRESET: configures its build folder the first time. What cmake says
# is shown only when it fails.
configure_once() {
  local folder="$root/build/$1" said
  [[ -f $folder/build.ninja ]] && return 0
  said=$(cd "$root" && cmake --preset "$1" 2>&1) && return 0
  printf '%s\n' "$said" >&2
  return 1
}
