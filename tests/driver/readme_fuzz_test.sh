#!/usr/bin/env bash
# The README's fuzz section against the fuzz targets: every target of fuzz/CMakeLists.txt has
# its command line there, and what the line names (dictionary, corpus) is in the repository;
# every dictionary is used.
set -uo pipefail
root=$1
fail() { echo "FAIL: $*"; exit 1; }
readme=$root/README.md
targets=$(grep -oE '^mivo_fuzz_target\([a-z_]+' "$root/fuzz/CMakeLists.txt" | cut -d'(' -f2)
[ -n "$targets" ] || fail "no fuzz targets found"
for t in $targets; do
  line=$(grep -E "^build/fuzz/fuzz/$t " "$readme" | head -1)
  [ -n "$line" ] || fail "the README has no command for $t"
  [[ $line == *" fuzz/corpus/$t"* ]] || fail "the command of $t does not name its corpus"
  [ -n "$(ls -A "$root/fuzz/corpus/$t" 2>/dev/null)" ] || fail "fuzz/corpus/$t is missing or empty"
  for dict in $(grep -oE -- '-dict=[^ ]+' <<<"$line" | cut -d= -f2); do
    [ -f "$root/$dict" ] || fail "$t names $dict, which is not there"
  done
done
for dict in "$root"/fuzz/*.dict; do
  grep -qE "^build/fuzz/fuzz/[a-z_]+ -dict=fuzz/$(basename "$dict") " "$readme" || fail "$(basename "$dict") is used by no command"
done
echo "README: $(wc -w <<<"$targets") fuzz targets with their commands, corpora and dictionaries"
