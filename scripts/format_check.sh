#!/usr/bin/env bash
# Checks that every tracked C++ source (.cpp, .h) is formatted as the root .clang-format says,
# without changing any file. Prints clang-format's findings and exits non-zero when a file
# differs; `clang-format -i FILE` formats one.
#
# Usage: format_check.sh [FILE...]   the given files only (default: every tracked .cpp and .h)
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
cd "$here"
if ! command -v clang-format >/dev/null; then
  echo "format_check: clang-format is not installed (apt-get install clang-format)" >&2
  exit 2
fi
if [ $# -gt 0 ]; then
  files=("$@")
else
  mapfile -t files < <(git ls-files -- '*.cpp' '*.h')
fi
[ ${#files[@]} -gt 0 ] || exit 0
# --Werror turns a difference into a failure; -style=file reads .clang-format at the root
if printf '%s\0' "${files[@]}" | xargs -0 clang-format --dry-run --Werror -style=file; then
  echo "format_check: ${#files[@]} files formatted"
else
  echo "format_check: files above differ from .clang-format" >&2
  exit 1
fi
