#!/usr/bin/env bash
# Fuzzes one target, or all of them, two at a time, with those seeds that are kept here and what
# earlier runs have found beside the programs. ./dev fuzz builds them and calls this.
#   run.sh BUILD TARGET [SECONDS|FILE]
#   run.sh BUILD all RUNS runs     that many in all, shared out
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
programs=$1/fuzz
target=${2:-}
limit=${3:-300}
# Of a thousand runs in all: what runs fast runs most, and none takes much longer than the others.
# What takes longest is begun first.
declare -A share=([agent]=600 [plugin]=250 [inventory]=120 [format]=15 [argv]=10 [trace]=4 [lab]=1)
all=(agent plugin lab argv inventory format trace)

# Old allocations are kept for a while, so that their use is noticed; less of it is faster.
export ASAN_OPTIONS=quarantine_size_mb=32:malloc_context_size=8 UBSAN_OPTIONS=print_stacktrace=1

# Words that chance would not find: those written down here, and for command lines all that the page
# of the commands has, so that a new one is tried at once.
dictionary() { # TARGET
  cat "$root/$1.dict"
  [[ $1 == argv ]] || return 0
  local page="$root/../docs/commands.md"
  { grep -oE '`[^`]+`|^### .*' "$page"; grep -oE 'Options are: [^.|]+' "$page" | cut -d: -f2; } |
    tr -s '`, |' '\n' | grep -E '^-{0,2}[a-zA-Z0-9][a-zA-Z0-9-]+$' | sort -u | sed 's/.*/"&"/'
}

fuzz() { # TARGET LIMIT
  local found="$programs/found/$1" log="$programs/$1.log" seed=${FUZZ_SEED:-$((RANDOM + 1))} status=0
  mkdir -p "$found"
  dictionary "$1" >"$programs/$1.dict"
  "$programs/$1" -seed="$seed" "$2" -timeout=20 -dict="$programs/$1.dict" -print_final_stats=1 \
    -artifact_prefix="$programs/$1-" "$found" "$root/seeds/$1" "$programs/seeds/$1" \
    >"$log" 2>&1 </dev/null || status=$?
  local runs coverage
  runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
  coverage=$(sed -n 's/^#.* \(cov: [0-9]* ft: [0-9]*\).*/\1/p' "$log" | tail -1)
  echo "fuzz $1: seed $seed, ${runs:-no} runs, ${coverage:-nothing covered}"
  ((status == 0)) && return
  local input
  input=$(sed -n 's/.*Test unit written to //p' "$log" | tail -1)
  grep -m1 -A3 -E 'property does not hold|ERROR:|runtime error' "$log" || tail -20 "$log"
  echo "fuzz $1: FAILED, see $log${input:+; once more: ./dev fuzz $1 $input}"
  return 1
}

if [[ $target == all ]]; then
  failed=0
  flag=-max_total_time=$limit
  for target in "${all[@]}"; do
    while (($(jobs -rp | wc -l) >= 2)); do wait -n || failed=1; done
    [[ ${4:-} != runs ]] || flag=-runs=$((limit * share[$target] / 1000))
    fuzz "$target" "$flag" &
  done
  while [[ -n $(jobs -p) ]]; do wait -n || failed=1; done
  awk '/^stat::number_of_executed_units:/ { runs += $2 } END { printf "fuzz: %d runs in all\n", runs }' \
    $(printf "$programs/%s.log " "${all[@]}")
  exit $failed
elif [[ " ${all[*]} " != *" $target "* ]]; then
  echo "usage: ./dev fuzz all|TARGET [SECONDS|FILE], TARGET one of ${all[*]}" >&2
  exit 2
elif [[ $limit =~ ^[0-9]+$ ]]; then
  fuzz "$target" "-max_total_time=$limit"
else
  exec "$programs/$target" "$limit"
fi
