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
  explained_as_done
}

# MivoExplain.exe ran first (run_case.sh): it changed nothing, and the launcher did what it
# said: the same program with the same command line, or the same account forwarded to.
explained_as_done() {
  local doc kind
  doc=$(printf '%s\n' "$out" | awk '/^== explain /{f=1; next} /^== /{f=0} f')
  [ -n "$doc" ] || return 0
  printf '%s\n' "$out" | grep -q '^== explain-changed$' &&
    fail "the explanation changed files: $(printf '%s\n' "$out" | awk '/^== explain-changed/{f=1; next} /^== /{f=0} f')"
  kind=$(jq -r .action.kind <<<"$doc") || { fail "the explanation is no JSON document: $doc"; return; }
  local client update
  client=$(jq -r .action.clientCommandLine <<<"$doc")
  update="\"$(jq -r .action.executorFile <<<"$doc")\" $(jq -r .action.executorParameters <<<"$doc")"
  case "$kind" in
    startClient | updateThenClient)
      [ "$(count_of client)" = 0 ] || [ "$(lines_of client)" = "$client" ] ||
        fail "explained client [$client], started [$(lines_of client)]"
      if [ "$kind" = startClient ]; then
        [ "$(count_of update)" = 0 ] || fail "explained no update, the executor ran"
      else
        [ "$(count_of update)" = 1 ] || [ ! -f "$work/$current/install/UpdateExec.exe" ] ||
          fail "explained an update, the executor ran $(count_of update) times"
        [ "$(count_of update)" = 0 ] || [ "$(lines_of update)" = "$update" ] ||
          fail "explained executor [$update], started [$(lines_of update)]"
      fi
      # whatever the plan starts, it starts when the explanation foresaw no problem on the way
      if [ "$(jq -r .token.kind <<<"$doc")" = plain ] && [ -f "$work/$current/install/MyMivo.exe" ] &&
        [ -z "${MIVO_E2E_UPDATE_CRASH:-}" ] && [ "$(jq '.problems | length' <<<"$doc")" = 0 ]; then
        [ "$(count_of client)" = 1 ] || fail "explained a client start, $(count_of client) happened"
      fi ;;
    forward)
      local account; account=$(jq -r .action.account <<<"$doc")
      [ "$(count_of client)$(count_of update)" = 00 ] || fail "explained a forward, a program was started"
      local got; got=$(printf '%s\n' "$out" | awk -F'\t' '$1 ~ /^forward:/ { sub(/^forward:/, "", $1); print $1 }' | sort -u)
      [ -z "$got" ] || [ "$got" = "$account" ] || fail "explained a forward to $account, it went to $got"
      [ -n "$got" ] || printf '%s\n' "$out" | grep -q 'not forwarded' || fail "explained a forward to $account, none happened" ;;
    showWindow)
      [ "$(count_of client)$(count_of update)" = 00 ] || fail "explained the window, a program was started"
      printf '%s\n' "$out" | grep -qF 'usertype is 3' || fail "explained the window, the launcher did not ask" ;;
    *) fail "explained action [$kind]" ;;
  esac
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
    if ! declare -F "case_$current" >/dev/null; then  # a case list out of step with the script
      echo "FAIL [$current]: no such case in $0"
      failures=$((failures + 1))
      continue
    fi
    "case_$current"
    [ "$failures" = 0 ] && echo "ok   [$current]"
  done
  [ "$failures" = 0 ] || { echo "$failures failure(s)"; exit 1; }
}
