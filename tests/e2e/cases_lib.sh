# What the end-to-end case scripts share: running one case through run_case.sh, reading its
# record and trace, and running the case_* functions a script defines. Sourced, not run.
set -uo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
resources=$(cd "$here/../../resources" && pwd)
: "${MIVO_START_EXE:?}" "${MIVO_E2E_BIN:?}"
work=$(realpath -m "${MIVO_E2E_WORK:-/tmp/mivo-e2e}")
token='/sf "5C1D7E20-94AB-4f63-8E2D-17B0C3A9F456"'
failures=0
out=

fail() { echo "FAIL [$current]: $*"; failures=$((failures + 1)); }
winpath() { local p; p=$(realpath -m "$1"); printf 'Z:%s' "${p//\//\\}"; }
# the command lines of one role, in the order recorded
lines_of() { printf '%s\n' "$out" | awk -F'\t' -v r="$1" 'f && $1 == r { print $4 } /^== record /{f=1} /^== trace /{f=0}'; }
times_of() { printf '%s\n' "$out" | awk -F'\t' -v r="$1" 'f && $1 == r { print $2 } /^== record /{f=1} /^== trace /{f=0}'; }
count_of() { lines_of "$1" | grep -c . ; }
has_trace() { printf "%s\n" "$out" | grep -qF -- "$1" || fail "trace lacks: $1"; }
run() {  # run CASE [args...]
  out=$("$here/run_case.sh" "$@" 2>&1)
  local rc=$?
  [ $rc = 0 ] || fail "run_case.sh exited $rc: $out"
}

# strings: the English string table, for MIVO_E2E_SETUP
strings="cp '$resources/lang/en_US/gdstrings.ini' gdstrings.ini"

# ---- runs with clients: the request they are handed and the store the launcher leaves ----

# Wine quotes the argument with a space, so this is the launcher's raw command line too.
request='/open "chat room" /uid 42'
store_file() { printf '%s/%s/install/start.txt' "$work" "$current"; }
# start.txt must hold exactly these bytes and a line feed: the compact writer's one line.
store_is() {
  local actual
  actual=$(od -An -c "$(store_file)" 2>&1)
  [ "$actual" = "$(printf '%s\n' "$1" | od -An -c)" ] || fail "start.txt is [$(cat "$(store_file)" 2>&1)], expected [$1]"
}
# a MIVO_E2E_SETUP step that writes start.txt
store_setup() { printf "printf '%%s' '%s' > start.txt" "$1"; }
# how many texts the running clients received
forwards() { printf '%s\n' "$out" | awk -F'\t' '$1 ~ /^forward:/' | grep -c . ; }

# Runs the named cases, or every case_* function when none is named.
run_cases() {
  local all
  all=$(declare -F | awk '{print $3}' | grep '^case_' | sed 's/^case_//')
  for current in ${@:-$all}; do
    "case_$current"
    [ "$failures" = 0 ] && echo "ok   [$current]"
  done
  [ "$failures" = 0 ] || { echo "$failures failure(s)"; exit 1; }
}
