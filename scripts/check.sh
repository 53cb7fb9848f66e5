#!/usr/bin/env bash
# The whole check: formatting, all tests, all tests under the sanitizers, and a
# short run of every fuzz target (FUZZ_SECONDS each, default 15).
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"
# shellcheck source=packages.sh
source scripts/packages.sh
need_packages "${packages_check[@]}"
need_packages "libclang-rt-$(clang -dumpversion | cut -d. -f1)-dev"

echo "== formatting"
git ls-files '*.h' '*.cpp' | xargs clang-format --dry-run -Werror

echo "== tests"
./test

echo "== fuzzing"
configure_once fuzz
cmake --build build/fuzz
seconds=${FUZZ_SECONDS:-15}
for target in build/fuzz/fuzz/*/fuzz_*; do
  [[ -x $target && -f $target ]] || continue
  name=$(basename "$target")
  name=${name#fuzz_}
  work=$(mktemp -d)
  dictionary=()
  [[ -f fuzz/dictionaries/$name.dict ]] && dictionary=("-dict=fuzz/dictionaries/$name.dict")
  seeds=()
  [[ -d fuzz/seeds/$name ]] && seeds=("fuzz/seeds/$name")
  echo "-- $name"
  "$target" -max_total_time="$seconds" -rss_limit_mb=2048 -timeout=20 -verbosity=0 \
    -print_final_stats=0 -print_funcs=0 -artifact_prefix="$work/" "${dictionary[@]}" "$work" "${seeds[@]}"
  rm -rf "$work"
done

echo "== tests under the sanitizers"
configure_once asan
cmake --build build/asan
ctest --test-dir build/asan --output-on-failure -j "$(nproc)"
