#!/usr/bin/env bash
# fuzz/run-all.sh <folder of fuzz binaries> <seconds>
# Runs every fuzz_* binary in the folder for the given time, each on a fresh copy of its seed corpus
# (fuzz/corpus/<binary name>), so the committed seeds never change. Fails if any target crashes,
# leaks, times out or finds a failing input; the inputs that did it are kept beside the binaries.
set -euo pipefail

if [ $# -lt 1 ] || [ $# -gt 2 ]; then
  echo "usage: $0 <folder of fuzz binaries> [seconds, default 60]" >&2
  exit 2
fi
bin=$(cd "$1" && pwd)
seconds=${2:-60}
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

targets=()
for exe in "$bin"/fuzz_*; do
  [ -f "$exe" ] && [ -x "$exe" ] && targets+=("$(basename "$exe")")
done
if [ ${#targets[@]} -eq 0 ]; then
  echo "no fuzz_* binaries in $bin" >&2
  exit 1
fi

failed=()
for target in "${targets[@]}"; do
  corpus="$work/$target/corpus"
  mkdir -p "$corpus"
  if [ -d "$here/corpus/$target" ]; then
    cp "$here/corpus/$target"/* "$corpus"/
  fi
  seeds=$(ls "$corpus" | wc -l)
  log="$work/$target/log"
  echo "== $target: $seconds s from $seeds seed file(s)"
  if "$bin/$target" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 \
       -artifact_prefix="$work/$target/" "$corpus" >"$log" 2>&1; then
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
    cov=$(grep -o 'cov: [0-9]*' "$log" | tail -1 || true)
    echo "   ok: ${runs:-?} runs, ${cov:-cov: ?}, corpus grew to $(ls "$corpus" | wc -l) files"
  else
    echo "   FAILED; the end of its output:"
    tail -n 30 "$log" | sed 's/^/   | /'
    keep="$bin/$target-failures"
    mkdir -p "$keep"
    find "$work/$target" -maxdepth 1 -type f \( -name 'crash-*' -o -name 'leak-*' -o -name 'timeout-*' -o -name 'oom-*' \) \
      -exec cp {} "$keep"/ \;
    cp "$log" "$keep"/log
    echo "   failing inputs and the log are in $keep"
    failed+=("$target")
  fi
done

if [ ${#failed[@]} -ne 0 ]; then
  echo "Fuzzing failed: ${failed[*]}"
  exit 1
fi
echo "Fuzzing passed: ${targets[*]}"
