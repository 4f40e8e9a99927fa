#!/usr/bin/env bash
# ./mivo bench: builds the benchmarks (the native release build and the Windows build), runs
# each one pinned to one core and prints one table: metric, ours, the peer or floor it is held
# to, the ratio and the goal. Every benchmark checks that both sides did the same work before
# it times them, and prints its rows as "ROW|metric|ours|peer|ratio|goal|met".
# Usage: ./mivo bench [FILTER]   (FILTER: only the benchmarks whose name contains it)
set -uo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
cd "$here"
filter=${1:-}
mkdir -p build
log=$here/build/bench.log
: >"$log"
say() { printf '%s\n' "$*" >&2; }

say "==== set-up"
scripts/setup.sh >>"$log" 2>&1 || { say "set-up failed: $log"; exit 1; }

# name | preset | targets | command (run from the source folder)
wine_run="scripts/wine-run.sh $here/build/windows/wineprefix build/windows/bench/wine"
benches=(
  "launch|windows|MivoStart e2e_fake_client e2e_fake_update_exec e2e_fake_shell e2e_running_client e2e_plain_start e2e_plain_forward|bench/launch_bench.sh 11"
  "layout|native-release|layout_bench|build/native-release/bench/layout_bench"
  "tree|native-release|tree_bench|build/native-release/bench/tree_bench"
  "trace|native-release|trace_bench|build/native-release/bench/trace_bench"
  "trace-wine|windows|trace_wine_bench|$wine_run/trace_wine_bench.exe"
  "timer|native-release|timer_bench|build/native-release/bench/timer_bench"
  "delete|native-release|delete_bench|build/native-release/bench/delete_bench"
  "delete-wine|windows|delete_wine_bench|$wine_run/delete_wine_bench.exe"
  "conversion|native-release|conversion_bench|build/native-release/bench/conversion_bench"
  "conversion-wine|windows|conversion_wine_bench|$wine_run/conversion_wine_bench.exe"
  "pattern|native-release|pattern_bench|build/native-release/bench/pattern_bench '--benchmark_filter=BM_(CPatternMatcher|Hyperscan)/1000/'"
)

wanted=()
for entry in "${benches[@]}"; do
  IFS='|' read -r name _ _ _ <<<"$entry"
  [ -z "$filter" ] || [[ $name == *"$filter"* ]] && wanted+=("$entry")
done
[ ${#wanted[@]} -gt 0 ] || { say "no benchmark matches '$filter'"; exit 2; }

for preset in native-release windows; do
  targets=()
  for entry in "${wanted[@]}"; do
    IFS='|' read -r _ p t _ <<<"$entry"
    [ "$p" = "$preset" ] && targets+=($t)
  done
  [ ${#targets[@]} -gt 0 ] || continue
  say "==== build $preset (${#targets[@]} targets)"
  start=$(date +%s)
  { cmake --preset "$preset" && cmake --build --preset "$preset" --target "${targets[@]}"; } >>"$log" 2>&1 ||
    { tail -30 "$log" >&2; say "build of $preset failed: $log"; exit 1; }
  say "     $(($(date +%s) - start)) s"
done

rows=()
for entry in "${wanted[@]}"; do
  IFS='|' read -r name preset _ command <<<"$entry"
  say "==== run $name"
  start=$(date +%s)
  out=$(set -o pipefail; taskset -c 1 bash -c "$command" 2>>"$log" | sed 's/\x1b\[[0-9;]*m//g; s/\r$//' | tee -a "$log")
  status=$?
  got=$(printf '%s\n' "$out" | grep '^ROW|' || true)
  if [ $status -ne 0 ] || [ -z "$got" ]; then
    say "     failed (exit $status, no rows): $log"
    rows+=("ROW|$name|failed|see $log|-|-|no")
  else
    while IFS= read -r line; do rows+=("$line"); done <<<"$got"
  fi
  say "     $(($(date +%s) - start)) s"
done

printf '\n| metric | ours | peer / floor | ratio | goal | met |\n|---|---|---|---|---|---|\n'
for line in "${rows[@]}"; do
  IFS='|' read -r _ metric ours peer ratio goal met <<<"$line"
  printf '| %s | %s | %s | %s | %s | %s |\n' "$metric" "$ours" "$peer" "$ratio" "$goal" "$met"
done
printf '\nfull output: %s\n' "$log"
printf '%s\n' "${rows[@]}" | grep -q '|no$' && exit 1
exit 0
